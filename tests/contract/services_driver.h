// What the world around the services does: files, servers, installed products. Each peer has its
// own way of doing it; the cases do not know which. Paths are as the core writes them.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace peer {

/// The beginning of every case: an empty folder, nothing served, a Windows Installer without
/// products.
void Begin();

/// Handles events until `condition` holds; false when it does not within the time.
bool RunUntil(const std::function<bool()>& condition,
              std::chrono::milliseconds deadline = std::chrono::seconds(20));

/// The case's own folder.
std::string Folder();
/// Replaces a file, making the folders on the way.
void WriteFile(const std::string& path, std::string_view bytes);
/// Absent when there is no such file.
std::optional<std::string> FileBytes(const std::string& path);
void MakeFolder(const std::string& path);
bool IsFolder(const std::string& path);
/// How many files and folders a folder holds.
std::size_t CountIn(const std::string& folder);

/// Makes a program, in a folder that is made too, which writes its arguments, a line each, into
/// "<program>.log". Not in the fake.
void MakeRecorder(const std::string& path);

/// Serves one answer over https, for as long as the case lasts; its address.
std::string Serve(int status, const std::string& body);
/// An https address at which nobody answers.
std::string DeadAddress();

void InstallProduct(const std::string& productCode, const std::string& version);
void RemoveWindowsInstaller();

}  // namespace peer
