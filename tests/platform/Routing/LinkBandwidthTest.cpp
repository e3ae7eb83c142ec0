#include "Routing/Rib/LinkBandwidth.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>

namespace Routing::Rib {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(LinkBandwidth, TextHasTheLargestUnitThatIsReached) {
  struct Row {
    float bytesPerSecond;
    const char* text;
  };
  for (const Row& row :
       {Row{1.25e9F, "10Gbps"}, Row{64000, "512Kbps"}, Row{125, "1Kbps"}, Row{124.875F, "999bps"},
        Row{999.99994F / 8, "1Kbps"}, Row{125000, "1Mbps"}, Row{1.25e8F, "1Gbps"},
        Row{1.25e11F, "1Tbps"}, Row{0, "0bps"}, Row{0.1F, "0.8bps"}, Row{-1, "-8bps"},
        Row{-125000, "-1Mbps"}, Row{1.23456789e8F, "987.654Mbps"}, Row{infinity, "inf"},
        Row{-infinity, "-inf"}, Row{std::numeric_limits<float>::max(), "2.72226e+27Tbps"}}) {
    EXPECT_EQ(row.text, LinkBandwidth(row.bytesPerSecond).toStrep(false));
  }
  EXPECT_EQ("nan", LinkBandwidth::fromBits(0x7FC00000).toStrep(false));
}

// Compared with the text that a stream writes in its default format and the classic locale.
TEST(LinkBandwidth, WeightIsWrittenAsAStreamWould) {
  std::mt19937 random(3);
  for (int i = 0; i < 100000; ++i) {
    const LinkBandwidth bandwidth = LinkBandwidth::fromBits(static_cast<U32>(random()));
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << bandwidth.bytesPerSecond();
    ASSERT_EQ(out.str(), bandwidth.toStrep(true)) << bandwidth.bits();
  }
}

TEST(LinkBandwidth, IsValidIfFiniteAndAboveZero) {
  struct Row {
    U32 bits;
    bool isValid;
  };
  for (const Row& row : {Row{0x00000000, false}, Row{0x80000000, false}, Row{0x00000001, true},
                         Row{0x80000001, false}, Row{0x7F7FFFFF, true}, Row{0x7F800000, false},
                         Row{0xFF800000, false}, Row{0x7FC00000, false}, Row{0x7F800001, false}}) {
    const LinkBandwidth bandwidth = LinkBandwidth::fromBits(row.bits);
    EXPECT_EQ(row.isValid, bandwidth.isValid()) << row.bits;
    EXPECT_EQ(row.bits, bandwidth.bits());
  }
  EXPECT_FALSE(LinkBandwidth().isValid());
}

}  // namespace
}  // namespace Routing::Rib
