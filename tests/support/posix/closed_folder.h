// A folder that takes no new file while this lives.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/posix/ordinary_user.h"

// The folder of a file that an ordinary user may write, but not exchange. `root`, above it, is opened to him.
class ClosedFolder {
 public:
    ClosedFolder(const std::filesystem::path& root, const std::filesystem::path& file)
        : m_folder(file.parent_path()) {
        if (geteuid() == 0) {
            EXPECT_EQ(chown(file.c_str(), AsOrdinaryUser::kNobody, AsOrdinaryUser::kNobody), 0);
            EXPECT_EQ(chmod(root.c_str(), 0755), 0);
        }
        EXPECT_EQ(chmod(m_folder.c_str(), 0555), 0);
    }
    ~ClosedFolder() { chmod(m_folder.c_str(), 0755); }
    ClosedFolder(const ClosedFolder&) = delete;
    ClosedFolder& operator=(const ClosedFolder&) = delete;

 private:
    std::filesystem::path m_folder;
};
