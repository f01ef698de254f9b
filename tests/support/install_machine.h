// For the tests of install and uninstall.
#pragma once

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/library.h"
#include "tests/support/session.h"
#include "tool/setup/file_changes.h"
#include "tool/setup/file_uri.h"
#include "tool/setup/install.h"

namespace marvane::tool {

/// A machine with a vendor's library in a folder and a root description file that names it.
class Machines : public ::testing::Test
{
protected:
    Machines()
    {
        std::filesystem::create_directory(folder.Path() / "vendor");
        std::filesystem::copy_file(testing::BuildFolder() + testing::LibraryName("SimVci"), vendor);
    }
    ~Machines() override
    {
        FileChanges::BeforeChange = nullptr;
        FileChanges::Abandoned = false;
    }

    std::string UriOfVendor() const { return UriOfPath(vendor, platform::PathSeparator); }
    std::string Entry(const std::string& name, const std::string& uri) const
    {
        return "<MVCI_PDU_API><SHORT_NAME>" + name + "</SHORT_NAME><LIBRARY_FILE URI=\"" + uri +
               "\"/></MVCI_PDU_API>\n";
    }
    std::string Entry(const std::string& name) const { return Entry(name, UriOfVendor()); }
    void WriteRoot(const std::string& entries)
    {
        testing::WriteFileBytes(root, "<MVCI_PDU_API_ROOT>\n" + entries + "</MVCI_PDU_API_ROOT>\n");
    }
    std::string RootBytes() const { return testing::FileBytes(root); }

    InstallOptions Options(const std::string& name = "One") const
    {
        InstallOptions options;
        options.Roots = {root};
        options.Name = name;
        options.To = copies;
        options.From = testing::BuildFolder();
        options.LogFolder = folder / "logs";
        return options;
    }
    std::string Uninstalled(const std::string& name = "One", bool logs = false)
    {
        UninstallOptions options;
        options.Name = name;
        options.To = copies;
        options.Logs = logs;
        return Named(Uninstall(options));
    }
    /// The reason of a refusal, the folder of the test as DIR.
    std::string Refusal(const InstallOptions& options) const
    {
        try {
            Install(options);
        } catch (const InstallRefused& refused) {
            return Named(refused.what());
        }
        return "not refused";
    }
    std::string Named(std::string text) const
    {
        for (const auto& [path, name] :
             {std::pair(folder.Path().string(), std::string("DIR")),
              std::pair(std::string(platform::OwnLibraryName), std::string("LIBRARY")),
              std::pair(vendorName, std::string("VENDOR"))})
            for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path))
                text.replace(at, path.size(), name);
        if (platform::PathSeparator == '\\')
            std::replace(text.begin(), text.end(), '\\', '/');
        return text;
    }
    /// Every file and folder of the test but the vendor's, sorted.
    std::string Traces() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
            names.insert(entry.path().lexically_relative(folder.Path()).generic_string());
        std::string traces;
        for (const std::string& name : names)
            if (!name.starts_with("vendor"))
                traces += name + "\n";
        return Named(traces);
    }

    testing::TemporaryFolder folder;
    std::string vendorName = testing::LibraryName("SimVci");
    std::string vendor = (folder.Path() / "vendor" / vendorName).string();
    std::string root = folder / "root.xml";
    std::string copies = folder / "copies";
};

} // namespace marvane::tool
