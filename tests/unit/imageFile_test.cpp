#include "Public/imageFile.h"

#include <gtest/gtest.h>
#include <memory>
#include <unistd.h>

TEST(ImageFile, ThatGotShorterMeanwhileIsNotReadAsIfItHadNot) {
    std::string name = testing::TempDir() + "image.XXXXXX";
    const int file = mkstemp(name.data());
    ASSERT_EQ(write(file, "0123456789", 10), 10);
    KT_U32 length = 0;
    const int fd = openImageFile(name, false, length);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(length, 10U);
    const auto page = std::make_unique<_Flash_Data>();
    ASSERT_EQ(ftruncate(file, 4), 0);
    EXPECT_FALSE(readImagePage(fd, length, *page));
    close(fd);
    close(file);
    unlink(name.c_str());
}
