// For the tests of the commands of the set-up: a vendor's library, a root description file that names it, and
// the command as it is typed.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tests/support/pattern.h"
#include "tests/support/session.h"
#include "tool/setup/file_uri.h"

namespace marvane::tool {

class SetupCommands : public ::testing::Test
{
protected:
    SetupCommands()
    {
        std::filesystem::copy_file(testing::BuildFolder() + testing::LibraryName("SimVci"), library);
        testing::WriteFileBytes(
            root, "<MVCI_PDU_API_ROOT>\n<MVCI_PDU_API><SHORT_NAME>SimVci</SHORT_NAME><LIBRARY_FILE "
                  "URI=\"" +
                      UriOfPath(library, platform::PathSeparator) +
                      "\"/></MVCI_PDU_API>\n</MVCI_PDU_API_ROOT>\n");
    }

    /// Standard output of a command, the folder of the test as DIR; a line with the exit status if that is
    /// not 0.
    std::string Run(std::vector<std::string> words) const
    {
        words.insert(words.begin(), testing::BuildFolder() + "marvane" + Extension());
        const platform::ChildResult result = platform::RunChild(words);
        std::string output = Named(result.Output);
        if (result.Status != 0)
            output += "exit status " + std::to_string(result.Status) + "\n";
        return output;
    }
    std::string Named(std::string text) const
    {
        std::erase(text, '\r');
        for (const auto& [path, name] :
             {std::pair(folder.Path().string(), std::string("DIR")),
              std::pair(testing::BuildFolder(), std::string("BUILD/")),
              std::pair(std::string(platform::OwnLibraryName), std::string("LIBRARY")),
              std::pair(testing::LibraryName("SimVci"), std::string("VENDOR"))})
            for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path))
                text.replace(at, path.size(), name);
        if (platform::PathSeparator == '\\')
            std::replace(text.begin(), text.end(), '\\', '/');
        return text;
    }
    /// Findings with their lines joined: where they are wrapped is another test's.
    static std::string Unwrapped(std::string shown)
    {
        const std::string wrap = "\n" + std::string(22, ' ');
        for (std::size_t at = shown.find(wrap); at != std::string::npos; at = shown.find(wrap))
            shown.replace(at, wrap.size(), " ");
        return shown;
    }
    /// What `check` prints about an entry that is installed: its findings in between, and the end.
    std::string Checked(const std::string& entry, const std::string& rootFile,
                        const std::string& configuration, const std::string& after, const std::string& counts,
                        const std::string& outcome) const
    {
        return entry + "\n\n  ok  Marvane         DIR/copies/" + entry + "/LIBRARY 1.0.0.0, " + bits +
               ", 29 of 29 functions\n" + rootFile + "  ok  configuration   DIR/copies/" + entry +
               "/D_PDU_API_CFG.xml beside Marvane; PDU_CFG_FILE is not set\n" + configuration +
               "  ok  LogFileDir      DIR/logs/ does not exist yet and can be made, SPACE free\n"
               "  ok  target library  DIR/VENDOR 1.4.2.7, " +
               bits + ", 29 of 29 functions\n" + after + "\n" + counts + "\nOutcome: " + outcome + ".\n";
    }
    static std::string WithoutSpace(const std::string& text)
    {
        return testing::ReplaceMatches(text, "[0-9]+ (GB|MB) free", "SPACE free");
    }
    std::string Check(std::vector<std::string> words) const
    {
        words.insert(words.begin(), "check");
        words.insert(words.end(), {"--root", root, "--to", folder / "copies"});
        return WithoutSpace(Unwrapped(Run(words)));
    }
    static std::string LeadsToMarvane(const std::string& entry)
    {
        return "  ok  root file       DIR/root.xml (--root) entry \"" + entry + "\" leads to Marvane\n";
    }
    static std::string NotCalled(const std::string& why)
    {
        return "   !  root file       DIR/root.xml " + why +
               " Marvane is not called. Run \"marvane install\" again.\n";
    }
    static std::string Extension() { return platform::PathSeparator == '\\' ? ".exe" : ""; }
    std::string Install() const
    {
        return Run({"install", "SimVci", "--root", root, "--to", folder / "copies", "--from",
                    testing::BuildFolder(), "--log-dir", folder / "logs", "--flush"});
    }

    testing::TemporaryFolder folder;
    testing::EnvironmentValue temp{"TEMP", folder.Path().string()}; ///< without a diagnostic log
    // A copy, since `check` reports every process that has the library loaded: other tests use the original.
    std::string library = folder / testing::LibraryName("SimVci");
    std::string root = folder / "root.xml";
    std::string bits = sizeof(void*) == 8 ? "64-bit" : "32-bit";
};

} // namespace marvane::tool
