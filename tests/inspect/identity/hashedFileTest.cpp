// Files that are hashed while they are read.
#include "inspect/recordings/hashedFile.h"
#include "support/tempFiles.h"

#include <QtCore/QCryptographicHash>

#include <gtest/gtest.h>

namespace {

using KxInspect::detail::HashedFile;

class HashedFiles : public testing::Test {
protected:
    HashedFiles() {
        for (unsigned i = 0; i < 100000; ++i) {
            bytes_.append(static_cast<char>(i * i / 7));
        }
        files_.write("a.bin", bytes_);
        file_.setFileName(files_.path("a.bin"));
        file_.open(QIODevice::ReadOnly);
    }
    /// By another implementation.
    std::string expected(qsizetype size) const {
        return QCryptographicHash::hash(bytes_.left(size), QCryptographicHash::Sha256).toHex().toStdString();
    }

    testing_support::TempFiles files_;
    QByteArray bytes_;
    HashedFile file_;
};

TEST_F(HashedFiles, GiveTheHashOfAllThatWasRead) {
    EXPECT_FALSE(file_.hash());
    file_.startHash(bytes_.size());
    for (const qint64 part : {1, 7000, 30000}) {
        file_.read(part);
        EXPECT_FALSE(file_.hash());
    }
    file_.seek(100); // again, which does not count twice
    file_.read(5000);
    file_.seek(20);
    file_.readAll();
    EXPECT_EQ(file_.hash(), expected(bytes_.size()));
}

TEST_F(HashedFiles, EndWhereTheyEndedAtFirst) {
    file_.startHash(70001);
    file_.readAll();
    EXPECT_EQ(file_.hash(), expected(70001));
}

TEST_F(HashedFiles, GiveNoneWithAGap) {
    file_.startHash(bytes_.size());
    file_.read(10);
    file_.seek(90000); // beyond what was buffered
    file_.readAll();
    EXPECT_FALSE(file_.hash());
}

} // namespace
