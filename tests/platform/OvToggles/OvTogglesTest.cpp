#include "OvToggles/OvToggles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using OvToggles::getToggleState;

// Each test has a folder of toggle files of its own, set by togglePathIs.
class OvTogglesTest : public testing::Test {
 protected:
  OvTogglesTest() : folder_(testing::TempDir() + "OvTogglesXXXXXX") {
    EXPECT_NE(mkdtemp(folder_.data()), nullptr);
    OvToggles::togglePathIs(folder_);
  }
  ~OvTogglesTest() override {
    OvToggles::togglePathIs("");
    std::filesystem::remove_all(folder_);
  }

  std::string path() const { return folder_ + "/BgpCommon.json"; }
  void write(const std::string& text) const { std::ofstream(path(), std::ios::binary) << text; }

  // What getToggleState writes to standard error. Its result must be the default state, whether
  // that is on or off.
  std::string complaint() const {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(getToggleState("OvBgpLlgr", "BgpCommon.json", false));
    testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    EXPECT_TRUE(getToggleState("OvBgpLlgr", "BgpCommon.json", true));
    return testing::internal::GetCapturedStderr();
  }

  std::string folder_;
};

TEST_F(OvTogglesTest, ReadsStatesFromTheFile) {
  const struct {
    const char* text;
    const char* name;
    bool state;
  } cases[] = {
      {R"({"OvBgpLlgr": false})", "OvBgpLlgr", false},
      {R"({"OvBgpLlgr":true})", "OvBgpLlgr", true},
      {" \r\n{\t\"a\" : true ,\n\"b\":false\n} \n", "b", false},
      {" \r\n{\t\"a\" : true ,\n\"b\":false\n} \n", "a", true},
      {R"({"\"\\\/\b\f\n\r\t": true})", "\"\\/\b\f\n\r\t", true},
      {R"({"\u0041\u00e9\u20AC\ud83d\ude00": true})", "A\u00e9\u20ac\U0001f600", true},
  };
  for (const auto& c : cases) {
    write(c.text);
    for (const bool defaultState : {false, true}) {
      EXPECT_EQ(getToggleState(c.name, "BgpCommon.json", defaultState), c.state) << c.text;
    }
  }
}

TEST_F(OvTogglesTest, KeepsTheDefaultWhereNothingIsSaid) {
  EXPECT_EQ(complaint(), "");  // no file
  write("{}");
  EXPECT_EQ(complaint(), "");  // no name
  write(R"({"OvBgpLlgrX": false, "OvBgpLlg": false})");
  EXPECT_EQ(complaint(), "");
  OvToggles::togglePathIs(folder_ + "/absent");
  EXPECT_EQ(complaint(), "");
}

TEST_F(OvTogglesTest, TakesTheFolderFromTheEnvironmentUntilToldOtherwise) {
  write(R"({"OvBgpLlgr": false})");
  OvToggles::togglePathIs("");
  EXPECT_TRUE(getToggleState("OvBgpLlgr", "BgpCommon.json", true));
  setenv("OV_TOGGLES_PATH", folder_.c_str(), 1);
  EXPECT_FALSE(getToggleState("OvBgpLlgr", "BgpCommon.json", true));
  OvToggles::togglePathIs(folder_ + "/absent");
  EXPECT_TRUE(getToggleState("OvBgpLlgr", "BgpCommon.json", true));
  unsetenv("OV_TOGGLES_PATH");
}

TEST_F(OvTogglesTest, SaysWhereAFileIsMalformed) {
  const struct {
    std::string text;
    const char* complaint;  // place, then what was expected and found
  } cases[] = {
      {"", "1:1: expected '{', found the end of the file"},
      {"[]", "1:1: expected '{', found '['"},
      {"\xef\xbb\xbf{}", "1:1: expected '{', found octet 239"},
      {"{\"a\": true,}", "1:12: expected a name in double quotes, found '}'"},
      {"{,}", "1:2: expected a name in double quotes, found ','"},
      {"{a: true}", "1:2: expected a name in double quotes, found 'a'"},
      {"{\"a\" true}", "1:6: expected ':', found 't'"},
      {"{\n  \"OvBgpLlgr\": 0\n}", "2:16: expected true or false, found '0'"},
      {"{\"a\": \"true\"}", "1:7: expected true or false, found '\"'"},
      {"{\"a\": {}}", "1:7: expected true or false, found '{'"},
      {"{\"a\": tru", "1:7: expected true or false, found 't'"},
      {"{\"a\": truely}", "1:11: expected ',' or '}', found 'l'"},
      {"{\"a\": true \"b\": true}", "1:12: expected ',' or '}', found '\"'"},
      {"{\"a\": true", "1:11: expected ',' or '}', found the end of the file"},
      {"{\"OvBgpLlgr\": false}\n// on", "2:1: expected the end of the file, found '/'"},
      {"{\"OvBgpLlgr\": false,\n \"OvBgpLlgr\": false}",
       "2:2: expected a name that has not been given before, found '\"'"},
      {"{\"ab", "1:5: expected '\"' at the end of the name, found the end of the file"},
      {"{\"a\nb\": true}", "1:4: expected '\"' at the end of the name, found octet 10"},
      {"{\"\\x\": true}", "1:4: expected one of \"\\/bfnrtu after '\\', found 'x'"},
      {"{\"\\", "1:4: expected one of \"\\/bfnrtu after '\\', found the end of the file"},
      {"{\"\\u12g4\": true}", "1:7: expected a hexadecimal digit, found 'g'"},
      {"{\"\\ud800\": true}", "1:5: expected a character or a whole surrogate pair, found 'd'"},
      {"{\"\\udc00\": true}", "1:5: expected a character or a whole surrogate pair, found 'd'"},
      {std::string("{\0}", 3), "1:2: expected a name in double quotes, found octet 0"},
  };
  for (const auto& c : cases) {
    write(c.text);
    EXPECT_EQ(complaint(), "OvToggles: " + path() + ":" + c.complaint +
                               "; toggle OvBgpLlgr keeps its default (on)\n");
  }
}

TEST_F(OvTogglesTest, RefusesWhatIsNoReadableFile) {
  const auto expectComplaint = [this](const char* what) {
    EXPECT_EQ(complaint(),
              "OvToggles: " + path() + ": " + what + "; toggle OvBgpLlgr keeps its default (on)\n");
  };
  std::filesystem::create_directory(path());
  expectComplaint("not a regular file");
  std::filesystem::remove(path());

  ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);  // reading must not wait for a writer
  expectComplaint("not a regular file");
  std::filesystem::remove(path());

  std::filesystem::create_symlink(path(), path());
  expectComplaint("Too many levels of symbolic links");
  std::filesystem::remove(path());

  write("{" + std::string(1 << 20, ' ') + "}");
  expectComplaint("larger than 1048576 octets");
}

}  // namespace
