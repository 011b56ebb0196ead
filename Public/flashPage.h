// One page of a flash image; too large for a stack.
#pragma once

#include <cstdlib>
#include <memory>

#include "ktraid.h"

inline constexpr KT_U32 FLASH_PAGE_SIZE = sizeof(_Flash_Data::Data);

struct FreeFlashPage {
    void operator()(_Flash_Data* page) const { free(page); }
};
using FlashPage = std::unique_ptr<_Flash_Data, FreeFlashPage>;

// A zeroed page; null without memory.
inline FlashPage newFlashPage() {
    return FlashPage(static_cast<_Flash_Data*>(calloc(1, sizeof(_Flash_Data))));
}
