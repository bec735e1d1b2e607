// The program's commands as a user runs them: the real program in a device folder of its own, beside it a
// folder for documents.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/device.h"
#include "tests/support/process.h"

namespace host {

class Commands : public ::testing::Test {
 protected:
    std::vector<std::string> Command(const std::string& name, const std::vector<std::string>& arguments) const {
        std::vector<std::string> command = {QTRACE_PROGRAM, name, "--device", m_device.string()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return command;
    }
    ProcessResult Run(const std::string& name, const std::vector<std::string>& arguments = {},
                      const ProcessOptions& options = {}) const {
        return RunProcess(Command(name, arguments), options);
    }
    // With standard output into a file of the system, like /dev/full.
    ProcessResult RunInto(const std::string& file, const std::string& name,
                          const std::vector<std::string>& arguments = {}) const {
        return RunInShell("exec \"$@\" >" + file, name, arguments);
    }
    // With a reader of standard output that goes away after the first byte. The exit code is the program's.
    ProcessResult RunIntoBrokenPipe(const std::string& name, const std::vector<std::string>& arguments) const {
        return RunInShell("\"$@\" | head -c 1 >/dev/null; exit ${PIPESTATUS[0]}", name, arguments);
    }
    nlohmann::json Json(const std::string& name, std::vector<std::string> arguments = {}) const {
        arguments.push_back("--json");
        return nlohmann::json::parse(Run(name, arguments).out);
    }

    std::string Path(const std::string& file) const { return (m_folder.Path() / file).string(); }
    // Writes a file and returns its path.
    std::string File(const std::string& name, const std::string& bytes) const {
        WriteFile(m_folder.Path() / name, bytes);
        return Path(name);
    }
    std::filesystem::path Track(const std::string& name) const {
        return m_device / "UserData" / "Track" / (name + ".gpx");
    }
    // Nothing but what is named lies in the folder of documents, beside the device.
    std::vector<std::string> Documents() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path()))
            if (entry.path() != m_device) names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_device = m_folder.Path() / "device";

 private:
    ProcessResult RunInShell(const std::string& script, const std::string& name,
                             const std::vector<std::string>& arguments) const {
        std::vector<std::string> shell = {"bash", "-c", script, "bash"};
        const std::vector<std::string> command = Command(name, arguments);
        shell.insert(shell.end(), command.begin(), command.end());
        return RunProcess(shell);
    }
};

inline bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// A GPX document around a body.
inline std::string Gpx(const std::string& body) {
    return "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" xmlns=\"http://www.topografix.com/GPX/1/1\">" + body +
           "</gpx>\n";
}

// A track of up to 40 points, a second and 0.001 degrees apart.
inline std::string GpxTrackText(const std::string& name, int points) {
    std::string text = "<trk>" + (name.empty() ? "" : "<name>" + name + "</name>") + "<trkseg>";
    for (int i = 0; i < points; ++i)
        text += "<trkpt lat=\"47." + std::to_string(100 + i) + "\" lon=\"8.5\"><ele>" +
                std::to_string(400 + i) + "</ele><time>2024-05-12T08:00:" + std::to_string(10 + i) +
                "Z</time></trkpt>";
    return text + "</trkseg></trk>";
}

}  // namespace host
