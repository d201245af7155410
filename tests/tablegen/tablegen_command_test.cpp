#include <gtest/gtest.h>

#include <filesystem>

#include "e2e/engine_process.h"

namespace {

namespace fs = std::filesystem;

const std::string TABLEGEN = (fs::path(ZEPHRIN_BINARY).parent_path() / "tablegen").string();

EngineRun RunTablegen(const std::vector<std::string>& arguments) { return RunEngine(arguments, "", 120, 0, TABLEGEN); }

// A named ending brings the endings its promotions lead to, but not those the directory has; bad
// arguments get the usage and status 2, an ending that isn't one an error and status 1.
TEST(TablegenCommand, MakesTheNamedEndingAndWhatItLeadsTo) {
  const TemporaryDirectory temporary;
  const fs::path directory = temporary.path;
  ASSERT_EQ(RunTablegen({directory.string(), "krk"}).status, 0);
  const fs::file_time_type krk_time = fs::last_write_time(directory / "krk.nbw");
  const EngineRun run = RunTablegen({"--compressed", directory.string(), "kpk"});
  EXPECT_EQ(run.status, 0) << run.err;
  for (const char* made : {"kpk", "knk", "kbk", "kqk"}) {
    EXPECT_NE(run.out.find(std::string(made) + ": written in "), std::string::npos) << made;
    EXPECT_TRUE(fs::exists(directory / (std::string(made) + ".nbb.emd"))) << made;
  }
  EXPECT_EQ(run.out.find("krk:"), std::string::npos);
  EXPECT_EQ(fs::last_write_time(directory / "krk.nbw"), krk_time);
  EXPECT_NE(run.out.find("\nkpk   white       81664      62480      19184          0       28\n"), std::string::npos)
      << run.out;

  for (const std::vector<std::string>& bad : {std::vector<std::string>{}, {"--fast", directory.string()}}) {
    const EngineRun refused = RunTablegen(bad);
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.err.rfind("usage: tablegen [--compressed] DIR [ENDING ...]\n", 0), 0u) << refused.err;
  }
  const EngineRun unknown = RunTablegen({directory.string(), "krkq"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.err, "tablegen: krkq is not the name of an ending\n");
}

}  // namespace
