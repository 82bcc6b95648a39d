#include <gtest/gtest.h>

#include "frame/conventions.h"

TEST(Conventions, NumberTextHasSignBlank) { EXPECT_EQ(tf::number_text(int64_t{1024}), " 1024"); }
