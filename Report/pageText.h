// The page around its data (Report/page/page.html with script and style in it), as the build put it together.
#pragma once

extern const char PAGE_BEFORE_DATA[];
extern const char PAGE_AFTER_DATA[];
