// File replacement with write-through and MoveFileEx.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include "platform/durable_file.h"

namespace platform {

namespace {

std::error_code LastError() { return {static_cast<int>(GetLastError()), std::system_category()}; }

std::error_code WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const DWORD chunk = bytes.size() > 0x40000000u ? 0x40000000u : static_cast<DWORD>(bytes.size());
        DWORD written = 0;
        if (!WriteFile(file, bytes.data(), chunk, &written, nullptr)) return LastError();
        if (written == 0) return std::make_error_code(std::errc::io_error);
        bytes.remove_prefix(written);
    }
    return {};
}

}  // namespace

ReplaceFailure ReplaceFileDurably(const std::filesystem::path& target, std::string_view bytes) {
    const std::filesystem::path temp = ReplacementTempPath(target);
    HANDLE file = CreateFileW(temp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {LastError(), "cannot create a temporary file"};
    ReplaceFailure failed{WriteAll(file, bytes), "cannot write the temporary file"};
    if (!failed && !FlushFileBuffers(file)) failed = {LastError(), "cannot flush the file to disk"};
    if (!CloseHandle(file) && !failed) failed = {LastError(), "cannot write the temporary file"};
    if (!failed && !MoveFileExW(temp.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        failed = {LastError(), "cannot replace the file"};
    if (failed) {
        DeleteFileW(temp.c_str());
        return failed;
    }
    return {};
}

}  // namespace platform
