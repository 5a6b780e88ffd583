// The host system on Windows.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <filesystem>

#include "platform/system_info.h"

namespace platform {

// The first instance owns a named mutex for as long as it runs; the system
// closes it when the process ends, however it ends.
bool HostSystemInfo::PrevInstance() {
    static const bool other = [] {
        HANDLE mutex = CreateMutexW(nullptr, FALSE, L"Local\\TarvelloS");  // kept open on purpose
        return mutex != nullptr && GetLastError() == ERROR_ALREADY_EXISTS;
    }();
    return other;
}

int HostSystemInfo::AnsiCodePage() { return static_cast<int>(GetACP()); }

std::optional<std::string> HostSystemInfo::ExecutableFolder() {
    std::wstring buf(32768, L'\0');
    const DWORD n = GetModuleFileNameW(nullptr, buf.data(), static_cast<DWORD>(buf.size()));
    if (n == 0 || n >= buf.size()) return std::nullopt;
    buf.resize(n);
    const std::u8string folder = std::filesystem::path(buf).parent_path().u8string();
    return std::string(folder.begin(), folder.end());
}

}  // namespace platform
