// The XBoard protocols as a front end sees them: protocol lines only.
#include <gtest/gtest.h>

#include "e2e/engine_process.h"

namespace {

const std::string P = Prompt("White 1");

std::string Features(const std::string& name) {
  return "feature analyze=1\nfeature colors=0\nfeature draw=1\nfeature ics=0\nfeature myname=\"" + name +
         "\"\nfeature name=1\nfeature pause=0\nfeature ping=1\nfeature playother=1\nfeature resume=0\n"
         "feature reuse=1\nfeature san=1\nfeature setboard=1\nfeature sigint=0\nfeature sigterm=0\n"
         "feature time=0\nfeature usermove=1\nfeature variants=normal\nfeature done=1\n";
}

}  // namespace

TEST(XBoardEndToEnd, ProtoverSendsTheFeaturesWithTheName) {
  const EngineRun run = RunEngine({}, "xboard\nprotover 2\nping 1\n");
  EXPECT_EQ(run.out, P + Features("Zephrin") + "pong 1\n");
  EXPECT_EQ(run.status, 0);

  // Version 1 sends nothing, a future version is served as version 2.
  EXPECT_EQ(RunEngine({}, "protover 1\nping 2\n").out, P + "pong 2\n");
  EXPECT_EQ(RunEngine({}, "protover 3\n").out, P + Features("Zephrin"));
  EXPECT_EQ(RunEngine({}, "xboard\n").out, P);

  // id changes the name given in the features.
  EXPECT_EQ(RunEngine({}, "id ##Foo\nprotover 2\n").out, P + P + Features("Foo"));
  EXPECT_EQ(RunEngine({}, "id test build\nprotover 2\n").out, P + P + Features("Zephrin test build"));
  EXPECT_EQ(RunEngine({}, "id ##\nprotover 2\n").out, P + P + Features("Zephrin ##"));
}

TEST(XBoardEndToEnd, SilentAboutWhatIsNoProtocolLine) {
  const EngineRun run = RunEngine({}, "xboard\n\nrandom\naccepted draw\n?\n.\nbk\ne2e4 now\nnopost\npost\nhard\nfritz\nping 9\n");
  EXPECT_EQ(run.out, P +
                         "stat01: 0 0 0 0 0\n"
                         "Error (command is not supported): bk\n"
                         "Error (unrecognized command): e2e4 now\n"
                         "pong 9\n");
}

TEST(XBoardEndToEnd, StartupErrorsReachTheUserThroughTelluser) {
  const EngineRun run = RunEngine({"--xboard", "--contempt", "-20"}, "");
  EXPECT_EQ(run.out, "telluser Error while parsing startup commands (stopped at \"Error (wrong number of "
                     "arguments): contempt\")\n");
  EXPECT_EQ(run.status, 1);
}
