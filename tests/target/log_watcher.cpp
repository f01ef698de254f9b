// Saves a copy of the log at the moment when this library is loaded.
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

const bool Copied = [] {
    if (const char* const log = std::getenv("MARVANE_TEST_WATCHED_LOG"))
        std::ofstream(std::string(log) + ".at_load", std::ios::binary)
            << std::ifstream(log, std::ios::binary).rdbuf();
    return true;
}();

} // namespace
