#include <gtest/gtest.h>
#include "base/Numbers.h"
TEST(Numbers, Placeholder) { EXPECT_EQ(base::val("12.5abc"), 12.5); }
