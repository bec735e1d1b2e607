// A program that serves a page, run for real: waits until it says where, and asks it.
#pragma once

#include <charconv>
#include <string>

#include "tests/host/recorder.h"
#include "tests/host/track_folder.h"
#include "tests/support/http.h"

namespace host {

class PageTest : public TrackFolder {
 protected:
    // The port in the first address that the program printed into this file; 0 when none came.
    static int PortIn(const std::filesystem::path& file) {
        const std::string before = "http://127.0.0.1:";
        int port = 0;
        Eventually([&] {
            const std::string text = ReadFile(file);
            const std::size_t at = text.find(before);
            if (at == std::string::npos || text.find('/', at + before.size()) == std::string::npos)
                return false;
            std::from_chars(text.data() + at + before.size(), text.data() + text.size(), port);
            return true;
        });
        return port;
    }

    // The program's command line with both outputs in a file, so that the address can be read while it runs.
    std::vector<std::string> Served(const std::string& command,
                                    const std::vector<std::string>& arguments) const {
        std::vector<std::string> all = {"sh", "-c", "exec \"$@\" >" + Output().string() + " 2>&1", "sh"};
        for (const std::string& part : Command(command, arguments)) all.push_back(part);
        WriteFile(Output(), "");
        return all;
    }
    std::filesystem::path Output() const { return m_folder.Path() / "output"; }
    int Port() const { return PortIn(Output()); }

    static std::string Get(int port, const std::string& path, const std::string& more = "") {
        return "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) + "\r\n" + more + "\r\n";
    }
    static std::function<bool(const std::string&)> Has(const std::string& text) {
        return [text](const std::string& read) { return read.find(text) != std::string::npos; };
    }
};

}  // namespace host
