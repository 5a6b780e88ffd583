#include "platform/durable_file.h"

namespace platform {

std::filesystem::path ReplacementTempPath(const std::filesystem::path& target) {
    std::filesystem::path temp = target;
    temp += ".tmp~";
    return temp;
}

}  // namespace platform
