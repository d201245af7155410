#include "interfaces/uci_protocol.h"

#include <algorithm>
#include <cstdlib>

#include "frame/input.h"
#include "frame/string_conversions.h"
#include "frame/tee_stream.h"
#include "frame/version.h"
#include "interfaces/edit_board.h"
#include "interfaces/game.h"
#include "interfaces/game_files.h"
#include "interfaces/move_text.h"
#include "interfaces/uci_commands.h"
#include "interfaces/uci_options.h"

namespace ZephrinInterfaces {

namespace {

// Whole lines for the log only, the log-only mark on a line of its own after them.
template <typename Write>
void WriteLogOnlyLines(Write write) {
  {
    LogOnlySection log_only;
    write();
    Out << "(not sent to xboard)\n";
  }
  Out.Flush();
}

std::int64_t MillisecondsSince(const TimeStamp& start) {
  TimeStamp now;
  Now(now);
  return MillisecondsBetween(start, now);
}


}  // namespace

// Unlike the program's own coordinate form, UCI names every promotion piece, the queen too.
std::string UciMoveText(Move move) {
  static constexpr char PROMOTION_LETTERS[] = " pnbrqk";
  std::string text = SquareText(MoveFrom(move)) + SquareText(MoveTo(move));
  if (MovePromotion(move) != NO_PIECE) text += PROMOTION_LETTERS[MovePromotion(move)];
  return text;
}

// Scores beyond 31767 are mates; the distance in moves follows the console's "#n".
std::string UciScoreText(std::int32_t score) {
  if (score >= -31767 && score <= 31767) return "cp " + ToText(score);
  const std::int32_t moves = (32766 - std::abs(score)) / 2 + 1;
  return "mate " + ToText(score < 0 ? -moves : moves);
}

void UciProtocol::TakeOverFrom(const BasicProtocol& old) {
  BasicProtocol::TakeOverFrom(old);
  after_prompt_ = old.IsInteractive();
}

void UciProtocol::Activate() {
  SetRawStdin();
  if (after_prompt_) Out << "\n";
  Out << "id name " << ShortName() << " " << ProgramVersion() << "\n"
      << "id author the " << ProgramName() << " authors\n";
  for (const std::string& line : UciOptionLines(personality)) Out << line << "\n";
  WriteLine("uciok");
}

void UciProtocol::ShowHint(const std::string& move) { WriteLogOnlyText("Hint: " + move); }

void UciProtocol::ShowEngineMove(const std::string& move) { WriteLogOnlyText("move " + move); }

void UciProtocol::ShowGameResult(int result, int reason, int) { WriteLogOnlyText(GameOverText(result, reason)); }

void UciProtocol::ShowPredictedMove(const std::string& move) { WriteLogOnlyText(PredictedMoveText(move)); }

void UciProtocol::ShowCommandIgnored(const std::string& reason) {
  WriteLine("info string " + CommandIgnoredText(reason));
}

void UciProtocol::ReportError(const std::string& text) { WriteLine("info string " + text); }

// A move that beats the best one has only a bound at first: above the score of the best.
void UciProtocol::ReportNewBestMove(const std::string& move) {
  WriteLine("info depth " + ToText(last_depth_) + " score " + UciScoreText(last_score_) + " lowerbound pv " +
            CoordinateLine({move}));
}

void UciProtocol::ReportUpperBound(int depth, int bound) {
  WriteLine("info depth " + ToText(std::int32_t(depth)) + " score " + UciScoreText(bound) + " upperbound");
}

void UciProtocol::ReportSearchInstability() { WriteLogOnlyText("Search instability found!"); }

void UciProtocol::ShowSearchSummary(const SearchReport& search) {
  LogOnlySection log_only;
  BasicProtocol::ShowSearchSummary(search);
}

void UciProtocol::ShowBestMove(Move move, Move ponder) {
  WriteLine("bestmove " + (move == MOVE_INVALID ? "0000" : UciMoveText(move)) +
            (ponder == MOVE_INVALID ? "" : " ponder " + UciMoveText(ponder)));
}

void UciProtocol::AcceptDraw() { WriteLogOnlyText("offer draw"); }

void UciProtocol::Resign() { WriteLogOnlyText("resign"); }

void UciProtocol::OfferDraw() { WriteLogOnlyText("offer draw"); }

void UciProtocol::BoardChanged(const Game& game) {
  WriteLogOnlyLines([&] { game.DisplayPosition(false); });
}

void UciProtocol::ShowEditBoard(const EditBoard& board) {
  WriteLogOnlyLines([&] { Out << board.DisplayText(true); });
}

void UciProtocol::ShowPgnTags(const PgnTags& tags) {
  WriteLogOnlyLines([&] { Out << PgnTagsText(tags); });
}

void UciProtocol::TellUser(const std::string& text) { WriteLine("info string " + ReplaceChar(text, '\n', ' ')); }

std::unique_ptr<Command> UciProtocol::ParseLine(const TokenizedLine& line) {
  if (auto command = ParseUciCommand(*this, line)) return command;
  return BasicProtocol::ParseLine(line);
}

void UciProtocol::WriteThinkingLine(const SearchReport& search) {
  const std::int64_t ms = MillisecondsSince(search.start_time);
  const std::string nps = ms > 0 ? " nps " + ToText(search.nodes * 1000 / std::uint64_t(ms)) : "";
  last_depth_ = search.depth;
  last_score_ = search.score;
  WriteLine("info depth " + ToText(std::int32_t{search.depth}) + " score " + UciScoreText(search.score) +
            " nodes " + ToText(search.nodes) + nps + " time " + ToText(ms) + " pv " + CoordinateLine(search.pv));
}

void UciProtocol::ShowReady() { WriteLine("readyok"); }

// The variation stops at a move that doesn't read on the board, which can't happen for the
// search's own lines.
std::string UciProtocol::CoordinateLine(const std::vector<std::string>& san_moves) const {
  UserBoard board = search_root_;
  std::string line;
  for (const std::string& san : san_moves) {
    if (board.IsFinished()) board.SetResult(RESULT_NONE, REASON_MATE);  // a variation may pass a draw by rule
    Move move = MOVE_INVALID;
    if (ParseMove(board.Current(), san, move) != PARSE_OK) break;
    if (!line.empty()) line += ' ';
    line += UciMoveText(move);
    try {
      board.PlayMove(move);
    } catch (const UserBoard::invalid_move&) {
      break;
    }
  }
  return line;
}

}  // namespace ZephrinInterfaces
