-- What wixl cannot say about the Windows Installer package; scripts/package runs it, a query on a line.
-- SPDX-License-Identifier: MIT
--
-- Rights in the data folder, by account numbers, since names differ by language. System and
-- administrators: everything. Users: read everything (1200a9), add files but no folders (2), and write
-- and delete the files directly in it (130116), whoever made them: the next person replaces the queue of
-- the one before. docs/windows.md says why no less.
CREATE TABLE `MsiLockPermissionsEx` (`MsiLockPermissionsEx` CHAR(72) NOT NULL, `LockObject` CHAR(72) NOT NULL, `Table` CHAR(32) NOT NULL, `SDDLText` CHAR(0) NOT NULL, `Condition` CHAR(255) PRIMARY KEY `MsiLockPermissionsEx`)
INSERT INTO `MsiLockPermissionsEx` (`MsiLockPermissionsEx`, `LockObject`, `Table`, `SDDLText`) VALUES ('Data', 'DATAFOLDER', 'CreateFolder', 'D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)(A;;0x2;;;BU)(A;OINPIO;0x130116;;;BU)')
-- The program has a version. A package that does not say so would find the old program on the disk
-- the better one, keep it, and then remove it with the old product.
UPDATE `File` SET `Version` = '@VERSION@.0', `Language` = '1033' WHERE `File` = 'VelorVoiceSetup.exe'
DELETE FROM `MsiFileHash` WHERE `File_` = 'VelorVoiceSetup.exe'
