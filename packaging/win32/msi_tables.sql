-- What wixl cannot say about the Windows Installer package; scripts/package runs it, a query on a line.
-- SPDX-License-Identifier: MIT
--
-- Owner and rights of the data folder, by account numbers, since names differ by language. System and
-- administrators: everything. Users: read everything (1200a9), add files but no folders (2), and write
-- and delete the files directly in it (130116), whoever made them: the next user replaces the queue of
-- the one before. docs/windows.md says why no less.
CREATE TABLE `MsiLockPermissionsEx` (`MsiLockPermissionsEx` CHAR(72) NOT NULL, `LockObject` CHAR(72) NOT NULL, `Table` CHAR(32) NOT NULL, `SDDLText` CHAR(0) NOT NULL, `Condition` CHAR(255) PRIMARY KEY `MsiLockPermissionsEx`)
INSERT INTO `MsiLockPermissionsEx` (`MsiLockPermissionsEx`, `LockObject`, `Table`, `SDDLText`) VALUES ('Data', 'DATAFOLDER', 'CreateFolder', 'O:BAG:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)(A;;0x2;;;BU)(A;OINPIO;0x130116;;;BU)')
-- Users may make folders and junctions below ProgramData. CreateFolders would follow a junction in the
-- place of the data folder, and set the rights of what it leads to. "rd" removes a junction and not what it
-- leads to; it also removes an empty folder, and fails for another. 3170: a command line, deferred, as
-- system, whatever it returns.
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('RemoveJunction', 3170, 'TARGETDIR', '"[System64Folder]cmd.exe" /d /c rd "[CommonAppDataFolder]Velor Software"')
INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`) VALUES ('RemoveJunction', 'NOT Installed', 3690)
-- At the end, a warning if the voice installer is missing. 117: a script that is a property's value,
-- whatever it returns.
INSERT INTO `CustomAction` (`Action`, `Type`, `Source`) VALUES ('WarnOfMissingInstaller', 117, 'WarningScript')
INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`) VALUES ('WarnOfMissingInstaller', 'NOT REMOVE="ALL"', 6700)
-- The program has a version. A package that does not say so would find the old program on the disk
-- the better one, keep it, and then remove it with the old product.
UPDATE `File` SET `Version` = '@VERSION@.0', `Language` = '1033' WHERE `File` = 'VelorVoiceSetup.exe'
DELETE FROM `MsiFileHash` WHERE `File_` = 'VelorVoiceSetup.exe'
