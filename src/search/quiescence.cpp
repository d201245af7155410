#include "search/quiescence.h"

#include <algorithm>

#include "board/bitboard.h"
#include "board/move_generator.h"
#include "board/static_exchange.h"
#include "settings/search_settings.h"

// The two check bits of a move as a number: 1 direct, 2 discovered, 3 double.
static int CheckKind(Move move) { return int((move >> 21) & 3); }

int GenerationSet(int distance, int gamma, bool queen_check_line) {
  bool checks = distance >= generate_checking_moves_min_distance || queen_check_line;
  if (gamma > 31766) return checks ? GEN_CHECKS : 0;
  int mask = checks ? 0x1f : 0x11;
  if (distance >= generate_castling_moves_in_quiescence_min_distance) mask |= GEN_CASTLING;
  return mask;
}

int FollowUpGain(const Board& board, Move move) {
  Square from = MoveFrom(move), to = MoveTo(move);
  PieceType moved = MoveMoved(move);
  Bitboard targets = 0;
  switch (moved) {
    case PAWN: targets = Tables.pawn_attacks[board.side_to_move][to]; break;
    case KNIGHT: targets = Tables.knight_attacks[to]; break;
    case BISHOP: targets = board.BishopAttacks(to); break;
    case ROOK: targets = board.RookAttacks(to); break;
    case QUEEN: targets = board.QueenAttacks(to); break;
    default: targets = Tables.king_attacks[to]; break;
  }
  bool slider = moved >= BISHOP && moved <= QUEEN;
  if (slider && MoveCaptured(move) == NO_PIECE) {
    targets &= ~board.LineAttacks(to, Tables.direction[from][to]);
  }
  const BoardSide& enemy = board.Enemy();
  targets &= enemy.all & ~SquareBit(enemy.king_square);

  int best = 0;
  while (targets != 0) {
    Square s = PopFirstBit(targets);
    Bitboard involved = 0;
    Move next = MakeMoveWord(to, s, moved, board.TypeOn(s));
    best = std::max(best, StaticExchange(board, next, involved));
  }
  if (score_checking_move_should_neglect_trade_knight_vs_bishop && best < 11) best = 0;
  return best;
}

// Quiet check thresholds by check kind.
static int EveryCheckMinDistance(int check) {
  switch (check) {
    case 1: return search_every_normal_check_in_quiescence_min_distance;
    case 2: return search_every_discovered_check_in_quiescence_min_distance;
    default: return search_every_double_check_in_quiescence_min_distance;
  }
}

bool QuiescenceFilter(const Board& board, Move move, int distance, int gamma, int position_type) {
  int check = CheckKind(move);
  PieceType promotion = MovePromotion(move), captured = MoveCaptured(move), moved = MoveMoved(move);
  if (promotion == QUEEN) return true;
  if (promotion != NO_PIECE) return promotion == KNIGHT && (move & MOVE_DIRECT_CHECK) != 0;
  if (check != 0 && distance >= EveryCheckMinDistance(check)) return true;
  if (gamma > 31767) return false;

  int need = gamma - board.State().material - QUIESCENCE_MARGIN[position_type];
  if (captured == NO_PIECE && check <= 1 && distance < -128) need += -distance;
  int gain = PIECE_VALUE[captured];
  if (need > gain) {
    if (check == 0) return false;
    if (check == 1 && moved != KNIGHT) return false;
    gain += FollowUpGain(board, move);
    if (need > gain) return false;
  }
  if (moved == KING || check >= 2) return true;
  if (EXCHANGE_POINTS[captured] >= EXCHANGE_POINTS[moved]) return true;
  Bitboard involved = 0;
  return StaticExchange(board, move, involved) >= -10;
}
