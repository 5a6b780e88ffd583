// Byte-exact file access for the files the player keeps: read a file as it
// is, and replace one through a temporary file so that a crash or a full
// disk in the middle leaves the old file whole.
#pragma once

#include <string>

namespace players {

bool FileExists(const std::string& path);
// False when the file cannot be opened or read.
bool ReadFileBytes(const std::string& path, std::string& bytes);
// Writes bytes to a temporary file in the folder of path, then renames it
// over path. False (old file untouched, temporary removed) on any failure.
bool WriteFileSafely(const std::string& path, const std::string& bytes);

}  // namespace players
