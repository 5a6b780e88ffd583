// Sub-commands of the console tool. Each takes the arguments after its own
// name and returns the process exit code; usage errors go to stderr.
#pragma once

#include <string>
#include <vector>

#include "app/args.h"

namespace app {

int RunSettings(const Args& args);
int RunRead(const Args& args);
// `read table ...` and `read lasthand|lasttrick|score ...` (args after the window kind).
int RunReadTable(const Args& args);
int RunReadSub(const std::string& kind, const Args& args);
int RunReplay(const Args& args);
int RunDemo(const Args& args);
int RunWatch(const Args& args);

}  // namespace app
