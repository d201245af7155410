// One class per command keyword. Each is built by the parser with its arguments checked and
// converted, and does its work in Execute.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "board/types.h"
#include "interfaces/command.h"
#include "interfaces/user_board.h"
#include "tablebases/tablebase_initializer.h"

namespace ZephrinInterfaces {

class BasicProtocol;

// Raises the error for a command whose effect needs a part of the program that isn't built yet.
[[noreturn]] void RaiseNotAvailableYet(const Command& command);

// Raises "must be in force mode" unless the game is in force mode.
void RequireForceMode(const Command& command, const Game& game);

// Sets `done` and nothing else: empty lines and ignored words.
class Command_DoNothing : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

// --- Protocol commands ---

class Command_InstallNewProtocol : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
  virtual std::unique_ptr<BasicProtocol> CreateProtocol() const = 0;
};

class Command_Xboard : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_Protover2 : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_Fritz : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_Console : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

// --- Game commands ---

class Command_New : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Force : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Go : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Playother : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

// `white` and `black`: that side is to move, and the engine plays the other.
class Command_SetSide : public Command {
 public:
  Command_SetSide(std::string raw_input, Color side_to_move) : Command(std::move(raw_input)), side(side_to_move) {}
  void Execute(Game& game) override;
  Color side;
};

class Command_White : public Command_SetSide {
 public:
  explicit Command_White(std::string raw_input) : Command_SetSide(std::move(raw_input), WHITE) {}
};

class Command_Black : public Command_SetSide {
 public:
  explicit Command_Black(std::string raw_input) : Command_SetSide(std::move(raw_input), BLACK) {}
};

class Command_Analyze : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Exit : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
  bool validated = false;
};

class Command_MoveNow : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

// A move of the opponent, by `usermove` or as a bare word.
class Command_Move : public Command {
 public:
  Command_Move(std::string raw_input, std::string text) : Command(std::move(raw_input)), move_text(std::move(text)) {}
  void Execute(Game& game) override;
  std::string move_text;
  Move move = MOVE_INVALID;
  bool validated = false;
  Move expected = MOVE_INVALID;  // the move that a ponder search assumed when this one arrived
};

class Command_UsermoveNewStyle : public Command_Move {
 public:
  using Command_Move::Command_Move;
};

class Command_UsermoveOldStyle : public Command_Move {
 public:
  using Command_Move::Command_Move;
};

// The count of `undo` and `next`; `all` stands as this count.
constexpr std::int32_t ALL_MOVES = 1000000;

class Command_Undo : public Command {
 public:
  Command_Undo(std::string raw_input, std::int32_t moves) : Command(std::move(raw_input)), count(moves) {}
  void Execute(Game& game) override;
  std::int32_t count;
};

class Command_Remove : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
  bool validated = false;
};

class Command_Next : public Command {
 public:
  Command_Next(std::string raw_input, std::int32_t moves) : Command(std::move(raw_input)), count(moves) {}
  void Execute(Game& game) override;
  std::int32_t count;
};

class Command_Result : public Command {
 public:
  Command_Result(std::string raw_input, std::string result_text)
      : Command(std::move(raw_input)), result(std::move(result_text)) {}
  void Execute(Game& game) override;
  std::string result;  // "1-0", "0-1", "1/2-1/2" or "*"
};

class Command_Draw : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Hint : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

// `setboard` and `edit`: prepare a position once, then install it.
class Command_SetupBoardCommands : public Command {
 public:
  static constexpr int ACCEPTED = 0;
  static constexpr int INVALID = 1;
  static constexpr int CANCELLED = 2;

  using Command::Command;
  void Execute(Game& game) override;
  // Fills `board` and returns ACCEPTED, INVALID or CANCELLED.
  virtual int PrepareBoard(Game& game, UserBoard& board) = 0;

  UserBoard board;
  int outcome = -1;  // not prepared yet
};

class Command_Setboard : public Command_SetupBoardCommands {
 public:
  Command_Setboard(std::string raw_input, std::string fen_text)
      : Command_SetupBoardCommands(std::move(raw_input)), fen(std::move(fen_text)) {}
  int PrepareBoard(Game& game, UserBoard& board) override;
  std::string fen;
};

class Command_Edit : public Command_SetupBoardCommands {
 public:
  using Command_SetupBoardCommands::Command_SetupBoardCommands;
  int PrepareBoard(Game& game, UserBoard& board) override;
};

class Command_Quit : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

// --- Clock commands ---

class Command_SetTimeControl : public Command {
 public:
  using Command::Command;
};

class Command_Level : public Command_SetTimeControl {
 public:
  Command_Level(std::string raw_input, std::int32_t period_moves, std::int64_t base, std::int64_t increment)
      : Command_SetTimeControl(std::move(raw_input)), moves(period_moves), base_ms(base), increment_ms(increment) {}
  void Execute(Game& game) override;
  std::int32_t moves;
  std::int64_t base_ms;
  std::int64_t increment_ms;
};

class Command_Tc : public Command_SetTimeControl {
 public:
  Command_Tc(std::string raw_input, std::string control_text)
      : Command_SetTimeControl(std::move(raw_input)), text(std::move(control_text)) {}
  void Execute(Game& game) override;
  std::string text;
};

class Command_st : public Command {
 public:
  Command_st(std::string raw_input, std::int32_t limit) : Command(std::move(raw_input)), seconds(limit) {}
  void Execute(Game& game) override;
  std::int32_t seconds;
};

class Command_sd : public Command {
 public:
  Command_sd(std::string raw_input, std::int32_t limit) : Command(std::move(raw_input)), depth(limit) {}
  void Execute(Game& game) override;
  std::int32_t depth;
};

class Command_Time : public Command {
 public:
  Command_Time(std::string raw_input, std::int32_t time) : Command(std::move(raw_input)), centiseconds(time) {}
  void Execute(Game& game) override;
  std::int32_t centiseconds;
};

class Command_Otim : public Command {
 public:
  Command_Otim(std::string raw_input, std::int32_t time) : Command(std::move(raw_input)), centiseconds(time) {}
  void Execute(Game& game) override;
  std::int32_t centiseconds;
};

// --- Engine set-up commands ---

class Command_DisplayHashtableStatus : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_ResizeHashtable : public Command {
 public:
  Command_ResizeHashtable(std::string raw_input, std::string table_type, std::string size_text)
      : Command(std::move(raw_input)), type(std::move(table_type)), size(std::move(size_text)) {}
  void Execute(Game& game) override;
  std::string type;
  std::string size;
};

class Command_DisplayTablebasesStatus : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_InitTablebases : public Command {
 public:
  using Initializer = ZephrinTablebases::Initializer;
  Command_InitTablebases(std::string raw_input, std::string tb_type, std::uint64_t cache_bytes, std::string tb_path)
      : Command(std::move(raw_input)), type(std::move(tb_type)), size(cache_bytes), path(std::move(tb_path)) {}
  void Execute(Game& game) override;
  std::string type;
  std::uint64_t size;
  std::string path;
};

class Command_Contempt : public Command {
 public:
  Command_Contempt(std::string raw_input, std::int32_t contempt) : Command(std::move(raw_input)), value(contempt) {}
  void Execute(Game& game) override;
  std::int32_t value;
};

class Command_DisplayPersonality : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_SetPersonality : public Command {
 public:
  Command_SetPersonality(std::string raw_input, std::int32_t personality)
      : Command(std::move(raw_input)), value(personality) {}
  void Execute(Game& game) override;
  std::int32_t value;
};

// `easy` and `hard`.
class Command_SetPondering : public Command {
 public:
  Command_SetPondering(std::string raw_input, bool on) : Command(std::move(raw_input)), pondering(on) {}
  void Execute(Game& game) override;
  bool pondering;
};

class Command_Easy : public Command_SetPondering {
 public:
  explicit Command_Easy(std::string raw_input) : Command_SetPondering(std::move(raw_input), false) {}
};

class Command_Hard : public Command_SetPondering {
 public:
  explicit Command_Hard(std::string raw_input) : Command_SetPondering(std::move(raw_input), true) {}
};

// `post` and `nopost`.
class Command_SetOutput : public Command {
 public:
  Command_SetOutput(std::string raw_input, bool on) : Command(std::move(raw_input)), post(on) {}
  void Execute(Game& game) override;
  bool post;
};

class Command_Post : public Command_SetOutput {
 public:
  explicit Command_Post(std::string raw_input) : Command_SetOutput(std::move(raw_input), true) {}
};

class Command_Nopost : public Command_SetOutput {
 public:
  explicit Command_Nopost(std::string raw_input) : Command_SetOutput(std::move(raw_input), false) {}
};

class Command_Computer : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Name : public Command {
 public:
  Command_Name(std::string raw_input, std::string opponent) : Command(std::move(raw_input)), name(std::move(opponent)) {}
  void Execute(Game& game) override;
  std::string name;
};

class Command_Rating : public Command {
 public:
  Command_Rating(std::string raw_input, std::int32_t engine, std::int32_t opponent)
      : Command(std::move(raw_input)), engine_rating(engine), opponent_rating(opponent) {}
  void Execute(Game& game) override;
  std::int32_t engine_rating;
  std::int32_t opponent_rating;
};

class Command_Id : public Command {
 public:
  Command_Id(std::string raw_input, std::string id_text) : Command(std::move(raw_input)), id(std::move(id_text)) {}
  void Execute(Game& game) override;
  std::string id;
};

class Command_ModifySettingVariables : public Command {
 public:
  Command_ModifySettingVariables(std::string raw_input, std::string assignments)
      : Command(std::move(raw_input)), text(std::move(assignments)) {}
  void Execute(Game& game) override;
  std::string text;
};

class Command_ReadSearchSettings : public Command {
 public:
  Command_ReadSearchSettings(std::string raw_input, std::string file_name)
      : Command(std::move(raw_input)), file(std::move(file_name)) {}
  void Execute(Game& game) override;
  std::string file;
};

class Command_WriteSearchSettings : public Command {
 public:
  Command_WriteSearchSettings(std::string raw_input, std::string file_name)
      : Command(std::move(raw_input)), file(std::move(file_name)) {}
  void Execute(Game& game) override;
  std::string file;
};

class Command_DisplaySettingVariables : public Command {
 public:
  Command_DisplaySettingVariables(std::string raw_input, std::string names)
      : Command(std::move(raw_input)), text(std::move(names)) {}
  void Execute(Game& game) override;
  std::string text;
};

// --- Information commands ---

class Command_SendSearchStatus : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Display : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Eval : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Help : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Version : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_Ping : public Command {
 public:
  Command_Ping(std::string raw_input, std::string ping_argument)
      : Command(std::move(raw_input)), argument(std::move(ping_argument)) {}
  void Execute(Game& game) override;
  std::string argument;
};

class Command_Probe : public Command {
 public:
  Command_Probe(std::string raw_input, std::string fen_text) : Command(std::move(raw_input)), fen(std::move(fen_text)) {}
  void Execute(Game& game) override;
  std::string fen;
  UserBoard position;  // read from fen at the first execution
  bool validated = false;
};

class Command_OptimizePiece : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

// --- File commands ---

class Command_FileCommand : public Command {
 public:
  Command_FileCommand(std::string raw_input, std::string file_name)
      : Command(std::move(raw_input)), file(std::move(file_name)) {}
  std::string file;
};

class Command_ReadFEN : public Command_FileCommand {
 public:
  using Command_FileCommand::Command_FileCommand;
  void Execute(Game& game) override;
};

class Command_ReadPGN : public Command_FileCommand {
 public:
  using Command_FileCommand::Command_FileCommand;
  void Execute(Game& game) override;
};

class Command_WriteFEN : public Command_FileCommand {
 public:
  using Command_FileCommand::Command_FileCommand;
  void Execute(Game& game) override;
};

class Command_WritePGN : public Command_FileCommand {
 public:
  using Command_FileCommand::Command_FileCommand;
  void Execute(Game& game) override;
};

// --- Endgame database jobs ---

class Command_Generate : public Command {
 public:
  Command_Generate(std::string raw_input, std::string job_list) : Command(std::move(raw_input)), jobs(std::move(job_list)) {}
  void Execute(Game& game) override;
  std::string jobs;
};

class Command_Verify : public Command {
 public:
  Command_Verify(std::string raw_input, std::string job_list) : Command(std::move(raw_input)), jobs(std::move(job_list)) {}
  void Execute(Game& game) override;
  std::string jobs;
};

}  // namespace ZephrinInterfaces
