#include "Public/imageFile.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>
#include <memory>
#include <unistd.h>

TEST(ImageFile, ThatGotShorterMeanwhileIsNotReadAsIfItHadNot) {
    const ScratchFolder folder;
    const std::string name = folder.path + "/image";
    writeText(name, "0123456789");
    KT_U32 length = 0;
    const int fd = openImageFile(name, false, length);
    EXPECT_EQ(length, 10U);
    const auto page = std::make_unique<_Flash_Data>();
    writeText(name, "0123");
    EXPECT_FALSE(readImagePage(fd, length, *page));
    close(fd);
}
