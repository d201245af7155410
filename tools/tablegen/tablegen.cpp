// tablegen: solves endings of three and four men by retrograde analysis and writes them as
// Nalimov distance-to-mate tables, plain or compressed.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include "ending_material.h"
#include "retrograde_solver.h"
#include "table_compressor.h"
#include "table_writer.h"
#include "tablebases/nalimov_ending.h"

namespace {

using namespace ZephrinTablegen;

constexpr int LAST_FOUR_MAN_ID = 35;

constexpr const char* USAGE =
    "usage: tablegen [--compressed] DIR [ENDING ...]\n"
    "Solves endings of three and four men and writes them into DIR as Nalimov tables: ENDING.nbw\n"
    "with the first-named side to move and ENDING.nbb with the other (one file for knkn, kbkb, krkr\n"
    "and kqkq), or ENDING.nbw.emd and ENDING.nbb.emd with --compressed. Without an ENDING it makes\n"
    "all 35; a named ending also brings the endings its captures and promotions lead to, unless\n"
    "DIR has them already.\n";

struct Options {
  bool compressed = false;
  std::string directory;
  std::vector<std::string> endings;
};

bool ParseOptions(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--compressed") options.compressed = true;
    else if (argument.empty() || argument[0] == '-') return false;
    else if (options.directory.empty()) options.directory = argument;
    else options.endings.push_back(argument);
  }
  return !options.directory.empty();
}

// The id of a Nalimov ending by name, 0 for none.
int EndingId(const std::string& name) {
  for (int id = 1; id <= NalimovTablebases::ENDING_COUNT; ++id)
    if (name == NalimovTablebases::Ending(id).name) return id;
  return 0;
}

bool Symmetric(int id) { return NalimovTablebases::Ending(id).flags & NalimovTablebases::TB_SYMMETRIC; }

std::string FileName(const Options& options, int id, int side) {
  return options.directory + "/" + NalimovTablebases::Ending(id).name + (side == 0 ? ".nbw" : ".nbb") +
         (options.compressed ? ".emd" : "");
}

bool InDirectory(const Options& options, int id) {
  const std::string plain = options.directory + "/" + NalimovTablebases::Ending(id).name + ".nbw";
  return std::filesystem::exists(plain) || std::filesystem::exists(plain + ".emd");
}

// The endings to make: the named ones and, behind them, the endings they lead to that the
// directory lacks; all endings of three and four men when none is named. Empty after an error.
std::set<int> EndingsToMake(const Options& options) {
  std::set<int> ids;
  if (options.endings.empty()) {
    for (int id = 1; id <= LAST_FOUR_MAN_ID; ++id) ids.insert(id);
    return ids;
  }
  std::vector<int> pending;
  for (const std::string& name : options.endings) {
    const int id = EndingId(name);
    if (id == 0 || id > LAST_FOUR_MAN_ID) {
      std::cerr << "tablegen: " << name
                << (id == 0 ? " is not the name of an ending"
                            : " has five men; only endings of three and four men are made")
                << "\n";
      return {};
    }
    pending.push_back(id);
  }
  while (!pending.empty()) {
    const int id = pending.back();
    pending.pop_back();
    if (!ids.insert(id).second) continue;
    Material material;
    ParseEndingName(NalimovTablebases::Ending(id).name, material);
    for (const std::string& successor : SuccessorEndings(material)) {
      const int successor_id = EndingId(successor);
      if (!InDirectory(options, successor_id)) pending.push_back(successor_id);
    }
  }
  return ids;
}

void WriteTable(const Options& options, int id, int side, const std::vector<signed char>& table) {
  const std::string path = FileName(options, id, side);
  if (!options.compressed) {
    WriteFile(path, reinterpret_cast<const unsigned char*>(table.data()), table.size());
    return;
  }
  const std::vector<unsigned char> file = CompressTable(table);
  WriteFile(path, file.data(), file.size());
}

void PrintCounts(const std::string& table, const TableCounts& counts) {
  std::cout << std::left << std::setw(12) << table << std::right << std::setw(11)
            << counts.positions << std::setw(11) << counts.wins << std::setw(11) << counts.draws << std::setw(11)
            << counts.losses << std::setw(9) << counts.longest_mate << "\n";
}

using Summary = std::vector<std::pair<std::string, TableCounts>>;

// One line per table written, and their totals.
void PrintSummary(const Summary& summary) {
  std::cout << "\ntable         positions       wins      draws     losses longest mate (moves)\n";
  TableCounts total;
  for (const auto& [table, counts] : summary) {
    PrintCounts(table, counts);
    total.positions += counts.positions;
    total.wins += counts.wins;
    total.draws += counts.draws;
    total.losses += counts.losses;
    total.longest_mate = std::max(total.longest_mate, counts.longest_mate);
  }
  PrintCounts("all", total);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ParseOptions(argc, argv, options)) {
    std::cerr << USAGE;
    return 2;
  }
  const std::set<int> ids = EndingsToMake(options);
  if (ids.empty()) return 1;
  std::error_code error;
  std::filesystem::create_directories(options.directory, error);
  if (!std::filesystem::is_directory(options.directory)) {
    std::cerr << "tablegen: cannot make the directory " << options.directory << "\n";
    return 1;
  }
  EndingLibrary library;
  Summary summary;
  const auto begin = std::chrono::steady_clock::now();
  try {
    for (int id : ids) {
      const char* name = NalimovTablebases::Ending(id).name;
      const auto start = std::chrono::steady_clock::now();
      const SolvedEnding& ending = Solve(library, name);
      for (int side = 0; side < (Symmetric(id) ? 1 : 2); ++side) {
        TableCounts counts;
        WriteTable(options, id, side, LayOutTable(ending, id, side, counts));
        summary.emplace_back((std::string(name) + "     ").substr(0, 6) + (side == 0 ? "white" : "black"), counts);
      }
      const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
      std::cout << name << ": written in " << std::fixed << std::setprecision(1) << took.count() << " s\n"
                << std::flush;
    }
  } catch (const table_fault& fault) {
    std::cerr << "tablegen: " << fault.what() << "\n";
    return 1;
  }
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  PrintSummary(summary);
  std::cout << ids.size() << (ids.size() == 1 ? " ending in " : " endings in ") << std::setprecision(1)
            << took.count() << " s\n";
  return 0;
}
