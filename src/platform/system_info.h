// Facts about the running program and the system it runs on.
#pragma once

#include <optional>
#include <string>

namespace platform {

class SystemInfo {
public:
    virtual ~SystemInfo() = default;
    // Another instance of this program runs already.
    [[nodiscard]] virtual bool PrevInstance() = 0;
    // The system's ANSI code page (1252 Western, 932 Japanese, ...), in
    // which the player's files are written.
    [[nodiscard]] virtual int AnsiCodePage() = 0;
    // Folder of the executable (the default program folder); nothing when
    // the system cannot tell.
    [[nodiscard]] virtual std::optional<std::string> ExecutableFolder() = 0;
};

// The system this process runs on (the host's own services, whichever
// desktop backend is in use).
class HostSystemInfo final : public SystemInfo {
public:
    bool PrevInstance() override;
    int AnsiCodePage() override;
    std::optional<std::string> ExecutableFolder() override;
};

}  // namespace platform
