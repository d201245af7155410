#!/usr/bin/env python3
"""Checks one engine's side of xboard debug logs (written with -debugMode true).

For the engine under test ("first" by default) it replays the traffic and checks that:
  * every move the engine sent is legal in the game as the front end sent it;
  * every "ping N" was answered by "pong N", in order;
  * the engine did not call a legal move of the front end illegal;
  * with "post" off, only protocol lines reached the front end: move, feature, pong,
    tellics/telluser and friends, Illegal move, result lines, offer draw, resign, Hint,
    stat01 and "#" comments. With "post" on, thinking lines are allowed as well. A console
    prompt before the first feature line is noted, since the engine starts at its console;
  * the engine refused no command with "Error": xboard sends none it may refuse in a match.

Usage: check-protocol-log.py [--engine first|second] [--allow-chatter] [--quiet] LOG...
       check-protocol-log.py --self-test

--allow-chatter reports other output, and "Error" replies, as notes instead of failures
(for foreign engines, which talk freely). The last line of output is a machine-readable
summary. The exit status is 0 when no log has a failure, 1 otherwise, 2 on a usage or read
error. --self-test checks the move generator by perft and the checker on a made-up log.
"""

import re
import sys

# ----------------------------------------------------------------------------------------
# A small legal-move checker: FEN, move generation, SAN and coordinate moves.

START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"

KNIGHT_STEPS = ((1, 2), (2, 1), (2, -1), (1, -2), (-1, -2), (-2, -1), (-2, 1), (-1, 2))
KING_STEPS = ((1, 0), (1, 1), (0, 1), (-1, 1), (-1, 0), (-1, -1), (0, -1), (1, -1))
BISHOP_DIRS = ((1, 1), (1, -1), (-1, 1), (-1, -1))
ROOK_DIRS = ((1, 0), (-1, 0), (0, 1), (0, -1))


def square_name(sq):
    return "abcdefgh"[sq % 8] + str(sq // 8 + 1)


def parse_square(text):
    return "abcdefgh".index(text[0]) + 8 * (int(text[1]) - 1)


def white(piece):
    return piece.isupper()


class Position:
    """Squares a1 = 0 .. h8 = 63; pieces as FEN letters, '.' for empty."""

    def __init__(self, fen=START_FEN):
        fields = fen.split()
        if len(fields) < 4:
            raise ValueError("FEN needs at least four fields")
        self.board = ["."] * 64
        ranks = fields[0].split("/")
        if len(ranks) != 8:
            raise ValueError("FEN needs eight ranks")
        for row, text in enumerate(ranks):
            file = 0
            for ch in text:
                if ch.isdigit():
                    file += int(ch)
                elif ch in "PNBRQKpnbrqk" and file < 8:
                    self.board[(7 - row) * 8 + file] = ch
                    file += 1
                else:
                    raise ValueError("bad piece placement")
            if file != 8:
                raise ValueError("rank with other than eight squares")
        if fields[1] not in ("w", "b"):
            raise ValueError("bad side to move")
        self.white_to_move = fields[1] == "w"
        self.castling = "" if fields[2] == "-" else fields[2]
        if any(ch not in "KQkq" for ch in self.castling):
            raise ValueError("bad castling field")
        self.ep = None if fields[3] == "-" else parse_square(fields[3])
        self.halfmove = int(fields[4]) if len(fields) > 4 else 0
        self.fullmove = int(fields[5]) if len(fields) > 5 else 1
        for king in "Kk":
            if self.board.count(king) != 1:
                raise ValueError("each side needs one king")
        if self.attacked(self.king(not self.white_to_move), self.white_to_move):
            raise ValueError("the side not to move is in check")

    def copy(self):
        other = Position.__new__(Position)
        other.board = self.board[:]
        other.white_to_move = self.white_to_move
        other.castling = self.castling
        other.ep = self.ep
        other.halfmove = self.halfmove
        other.fullmove = self.fullmove
        return other

    def fen(self):
        rows = []
        for rank in range(7, -1, -1):
            text, empty = "", 0
            for file in range(8):
                piece = self.board[rank * 8 + file]
                if piece == ".":
                    empty += 1
                    continue
                if empty:
                    text += str(empty)
                    empty = 0
                text += piece
            rows.append(text + (str(empty) if empty else ""))
        ep = square_name(self.ep) if self.ep is not None else "-"
        return "%s %s %s %s %d %d" % ("/".join(rows), "w" if self.white_to_move else "b",
                                      self.castling or "-", ep, self.halfmove, self.fullmove)

    def king(self, is_white):
        return self.board.index("K" if is_white else "k")

    def attacked(self, sq, by_white):
        """Whether the side by_white attacks square sq."""
        f, r = sq % 8, sq // 8
        b = self.board

        def at(df, dr):
            nf, nr = f + df, r + dr
            return b[nr * 8 + nf] if 0 <= nf < 8 and 0 <= nr < 8 else None

        pawn_rank = -1 if by_white else 1
        if at(-1, pawn_rank) == ("P" if by_white else "p") or at(1, pawn_rank) == ("P" if by_white else "p"):
            return True
        own = str.upper if by_white else str.lower
        if any(at(df, dr) == own("n") for df, dr in KNIGHT_STEPS):
            return True
        if any(at(df, dr) == own("k") for df, dr in KING_STEPS):
            return True
        for dirs, sliders in ((BISHOP_DIRS, "bq"), (ROOK_DIRS, "rq")):
            for df, dr in dirs:
                nf, nr = f + df, r + dr
                while 0 <= nf < 8 and 0 <= nr < 8:
                    piece = b[nr * 8 + nf]
                    if piece != ".":
                        if piece in own(sliders) and white(piece) == by_white:
                            return True
                        break
                    nf, nr = nf + df, nr + dr
        return False

    def in_check(self):
        return self.attacked(self.king(self.white_to_move), not self.white_to_move)

    def pseudo_moves(self):
        """Moves as (from, to, promotion letter or None); castling only when it is legal."""
        moves = []
        b, us = self.board, self.white_to_move
        for sq, piece in enumerate(b):
            if piece == "." or white(piece) != us:
                continue
            f, r = sq % 8, sq // 8
            kind = piece.lower()
            if kind == "p":
                up = 1 if us else -1
                last = 7 if us else 0
                one = sq + 8 * up

                def add_pawn(to):
                    if to // 8 == last:
                        moves.extend((sq, to, p) for p in "qrbn")
                    else:
                        moves.append((sq, to, None))

                if b[one] == ".":
                    add_pawn(one)
                    if r == (1 if us else 6) and b[one + 8 * up] == ".":
                        moves.append((sq, one + 8 * up, None))
                for df in (-1, 1):
                    if 0 <= f + df < 8:
                        to = one + df
                        if (b[to] != "." and white(b[to]) != us) or to == self.ep:
                            add_pawn(to)
                continue
            if kind in "nk":
                for df, dr in (KNIGHT_STEPS if kind == "n" else KING_STEPS):
                    nf, nr = f + df, r + dr
                    if 0 <= nf < 8 and 0 <= nr < 8:
                        to = nr * 8 + nf
                        if b[to] == "." or white(b[to]) != us:
                            moves.append((sq, to, None))
                continue
            dirs = {"b": BISHOP_DIRS, "r": ROOK_DIRS, "q": BISHOP_DIRS + ROOK_DIRS}[kind]
            for df, dr in dirs:
                nf, nr = f + df, r + dr
                while 0 <= nf < 8 and 0 <= nr < 8:
                    to = nr * 8 + nf
                    if b[to] != ".":
                        if white(b[to]) != us:
                            moves.append((sq, to, None))
                        break
                    moves.append((sq, to, None))
                    nf, nr = nf + df, nr + dr
        # Castling: king and rook at home, the squares between empty, the king's path unattacked.
        home = 4 if us else 60
        rights = ("K", "Q") if us else ("k", "q")
        king, rook = ("K", "R") if us else ("k", "r")
        if b[home] == king and not self.in_check():
            if rights[0] in self.castling and b[home + 3] == rook and b[home + 1] == b[home + 2] == "." \
                    and not self.attacked(home + 1, not us) and not self.attacked(home + 2, not us):
                moves.append((home, home + 2, None))
            if rights[1] in self.castling and b[home - 4] == rook and b[home - 1] == b[home - 2] == b[home - 3] == "." \
                    and not self.attacked(home - 1, not us) and not self.attacked(home - 2, not us):
                moves.append((home, home - 2, None))
        return moves

    def play(self, move):
        """Returns the position after move, which must come from pseudo_moves."""
        frm, to, promo = move
        p = self.copy()
        b = p.board
        piece = b[frm]
        captured = b[to]
        us = self.white_to_move
        if piece in "Pp" and to == self.ep:
            b[to - 8 if us else to + 8] = "."
            captured = "p"
        b[to], b[frm] = piece, "."
        if promo:
            b[to] = promo.upper() if us else promo.lower()
        if piece in "Kk" and abs(to - frm) == 2:
            rook_from, rook_to = (frm + 3, frm + 1) if to > frm else (frm - 4, frm - 1)
            b[rook_to], b[rook_from] = b[rook_from], "."
        p.ep = None
        if piece in "Pp" and abs(to - frm) == 16:
            p.ep = (frm + to) // 2
        lost = {4: "KQ", 60: "kq", 0: "Q", 7: "K", 56: "q", 63: "k"}
        for sq in (frm, to):
            p.castling = "".join(ch for ch in p.castling if ch not in lost.get(sq, ""))
        p.halfmove = 0 if piece in "Pp" or captured != "." else self.halfmove + 1
        if not us:
            p.fullmove += 1
        p.white_to_move = not us
        return p

    def legal_moves(self):
        result = []
        for move in self.pseudo_moves():
            after = self.play(move)
            if not after.attacked(after.king(self.white_to_move), after.white_to_move):
                result.append(move)
        return result

    def san(self, move):
        """Standard algebraic notation of a legal move, with + or #."""
        frm, to, promo = move
        piece = self.board[frm].upper()
        if piece == "K" and abs(to - frm) == 2:
            text = "O-O" if to > frm else "O-O-O"
        else:
            capture = self.board[to] != "." or (piece == "P" and to == self.ep)
            if piece == "P":
                text = (square_name(frm)[0] + "x" if capture else "") + square_name(to)
                if promo:
                    text += "=" + promo.upper()
            else:
                rivals = [m[0] for m in self.legal_moves()
                          if m[1] == to and m[0] != frm and self.board[m[0]] == self.board[frm]]
                hint = ""
                if rivals:
                    if all(r % 8 != frm % 8 for r in rivals):
                        hint = square_name(frm)[0]
                    elif all(r // 8 != frm // 8 for r in rivals):
                        hint = square_name(frm)[1]
                    else:
                        hint = square_name(frm)
                text = piece + hint + ("x" if capture else "") + square_name(to)
        after = self.play(move)
        if after.in_check():
            text += "#" if not after.legal_moves() else "+"
        return text

    def parse_move(self, text):
        """A legal move from coordinate notation or SAN, or None. Ambiguous SAN is None."""
        text = text.strip()
        legal = self.legal_moves()
        m = re.fullmatch(r"([a-h][1-8])([a-h][1-8])=?([nbrqNBRQ]?)", text)
        if m:
            move = (parse_square(m.group(1)), parse_square(m.group(2)), m.group(3).lower() or None)
            return move if move in legal else None
        text = re.sub(r"[+#!?]+$", "", text).replace("0", "O")
        if text in ("O-O", "O-O-O"):
            home = 4 if self.white_to_move else 60
            move = (home, home + 2 if text == "O-O" else home - 2, None)
            return move if move in legal and self.board[home] in "Kk" else None
        m = re.fullmatch(r"([NBRQK]?)([a-h]?)([1-8]?)x?([a-h][1-8])(?:=?([NBRQnbrq]))?", text)
        if not m:
            return None
        kind, file, rank, dest, promo = m.groups()
        kind = kind or "P"
        to = parse_square(dest)
        fits = [mv for mv in legal
                if mv[1] == to and self.board[mv[0]].upper() == kind
                and (not file or square_name(mv[0])[0] == file)
                and (not rank or square_name(mv[0])[1] == rank)
                and mv[2] == (promo.lower() if promo else None)]
        return fits[0] if len(fits) == 1 else None


def perft(position, depth):
    if depth == 0:
        return 1
    moves = position.legal_moves()
    if depth == 1:
        return len(moves)
    return sum(perft(position.play(m), depth - 1) for m in moves)


# ----------------------------------------------------------------------------------------
# The log.

LOG_LINE = re.compile(r"^(\d+) ([<>])(first |second): ?(.*)$")
THINKING = re.compile(r"^\s*-?\d+[.&]?\s+-?\d+\s+-?\d+\s+\d+(\s.*)?$")
# Commands xboard sends several at a time; their later lines appear without a prefix.
CONTINUATION = re.compile(r"^(protover \d+|random|new|force|go|post|nopost|hard|easy|computer"
                          r"|white|black|playother|time -?\d+|otim -?\d+|ping \d+|level .*|st .*|sd .*)$")
PROTOCOL_PREFIXES = ("feature ", "tellics", "telluser", "tellopponent", "tellothers", "tellall",
                     "askuser ", "Error", "Hint:", "stat01:", "#", "offer draw", "resign")
EMBEDDED_PREFIX = re.compile(r"\d+ >(?:first |second): ?")
CONSOLE_PROMPT = re.compile(r"^\s*((White|Black) \d+> ?)?$")
RESULT = re.compile(r"^(1-0|0-1|1/2-1/2|\*) \{[^}]*\}$")


class EngineLog:
    def __init__(self, path, engine, allow_chatter):
        self.path = path
        self.engine = engine
        self.allow_chatter = allow_chatter
        self.failures = []
        self.notes = []
        self.counts = dict(moves=0, unchecked=0, illegal=0, rejected=0, pings=0, pong_errors=0,
                           chatter=0, thinking_unposted=0, errors=0)
        self.position = None          # None while unknown (e.g. set up by "edit")
        self.history = []
        self.edit = None              # the board being set up while in edit mode
        self.post = False
        self.features_seen = False
        self.pings = []
        self.sent_after_ping = set()  # commands sent since the oldest unanswered ping
        self.game_over = False
        # After "result" the engine may still send the move it was thinking about. Such a move can
        # arrive after the next game's "new"/"setboard"; it belongs to the old game as long as the
        # first ping sent after the result is unanswered ("pending": no ping sent yet).
        self.late_ping = None

    def fail(self, line_no, text):
        self.failures.append("%s:%d: %s" % (self.path, line_no, text))

    def note(self, line_no, text):
        self.notes.append("%s:%d: %s" % (self.path, line_no, text))

    # -- what the front end sent
    def sent(self, line_no, text):
        # xboard writes "usermove " and the move separately, and logs each write:
        # "3710 >first : usermove 3710 >first : b7b5".
        text = EMBEDDED_PREFIX.sub("", text)
        words = text.split()
        if not words:
            return
        if self.edit is not None:
            self.edit_command(line_no, text.strip())
            return
        cmd = words[0]
        if self.pings:
            self.sent_after_ping.add(cmd)
        if cmd in ("go", "usermove") and self.late_ping == "pending":
            self.late_ping = None  # a new game moves without a ping in between
        if cmd == "new":
            self.position, self.history, self.game_over = Position(), [], False
        elif cmd == "setboard":
            try:
                self.position, self.history = Position(" ".join(words[1:])), []
                self.game_over = False
            except (ValueError, IndexError) as error:
                self.position = None
                self.note(line_no, "cannot read setboard position (%s); moves are not checked" % error)
        elif cmd == "edit":
            base = self.position or Position()
            self.edit = dict(board=base.board[:], white=True, white_to_move=base.white_to_move)
        elif cmd == "post":
            self.post = True
        elif cmd == "nopost":
            self.post = False
        elif cmd == "ping" and len(words) > 1:
            self.pings.append(words[1])
            self.counts["pings"] += 1
            if self.late_ping == "pending":
                self.late_ping = words[1]
        elif cmd == "result":
            self.game_over = True
            self.late_ping = "pending"
        elif cmd == "undo":
            self.take_back(1)
        elif cmd == "remove":
            self.take_back(2)
        elif cmd == "usermove" and len(words) > 1:
            self.opponent_move(line_no, words[1])
        elif len(words) == 1 and re.fullmatch(r"[a-h][1-8][a-h][1-8][nbrq]?|O-O(-O)?|[NBRQK]?[a-h]?[1-8]?x?[a-h][1-8](=?[NBRQ])?[+#]?", cmd):
            self.opponent_move(line_no, cmd)

    def edit_command(self, line_no, text):
        """Edit mode: '#' clears the board, 'c' swaps the colour, 'Pe4' puts, 'xe4' clears,
        '.' leaves. Castling is allowed where king and rook stand at home."""
        e = self.edit
        if text == "#":
            e["board"] = ["."] * 64
        elif text == "c":
            e["white"] = not e["white"]
        elif re.fullmatch(r"[PNBRQKx][a-h][1-8]", text):
            piece = "." if text[0] == "x" else (text[0] if e["white"] else text[0].lower())
            e["board"][parse_square(text[1:])] = piece
        elif text == ".":
            self.edit = None
            b = e["board"]
            rights = "".join(flag for flag, king, rook in (("K", 4, 7), ("Q", 4, 0), ("k", 60, 63), ("q", 60, 56))
                             if b[king] == ("K" if flag.isupper() else "k")
                             and b[rook] == ("R" if flag.isupper() else "r"))
            rows = ["".join(b[r * 8:r * 8 + 8]) for r in range(7, -1, -1)]
            placement = "/".join(re.sub(r"\.+", lambda m: str(len(m.group())), row) for row in rows)
            fen = "%s %s %s - 0 1" % (placement, "w" if e["white_to_move"] else "b", rights or "-")
            try:
                self.position, self.history, self.game_over = Position(fen), [], False
            except ValueError as error:
                self.position = None
                self.note(line_no, "edit gave no valid position (%s); moves are not checked" % error)
        else:
            self.note(line_no, "unknown edit command %r" % text)

    def take_back(self, n):
        for _ in range(n):
            if self.history:
                self.position = self.history.pop()
        self.game_over = False

    def opponent_move(self, line_no, text):
        if self.position is None:
            return
        move = self.position.parse_move(text)
        if move is None:
            self.note(line_no, "front end sent %s, which is not legal here; position lost" % text)
            self.position = None
            return
        self.history.append(self.position)
        self.position = self.position.play(move)
        self.last_move_text = text

    # -- what the engine said
    def received(self, line_no, text):
        text = text.rstrip("\r\n")
        stripped = text.strip()
        if not self.features_seen and CONSOLE_PROMPT.match(text):
            # The engine starts at its console and may prompt once before "xboard" arrives.
            self.note(line_no, "console prompt before the protocol started: %r" % text)
            return
        if stripped.startswith("feature "):
            self.features_seen = True
        if stripped.startswith("move "):
            self.engine_move(line_no, stripped[5:].strip())
        elif stripped.startswith("pong"):
            self.pong(line_no, stripped[4:].strip())
        elif stripped.startswith("Illegal move"):
            self.illegal_move_reply(line_no, stripped)
        elif THINKING.match(text):
            if not self.post:
                self.counts["thinking_unposted"] += 1
                self.fail(line_no, "thinking output with post off: %s" % text)
        elif RESULT.match(text):
            pass
        elif stripped.startswith(PROTOCOL_PREFIXES) and stripped == text:
            if stripped.startswith("Error"):
                # In a plain match xboard sends nothing an engine may refuse.
                self.counts["errors"] += 1
                if self.allow_chatter:
                    self.note(line_no, "engine reports an error: %s" % text)
                else:
                    self.fail(line_no, "engine refused a command: %s" % text)
        elif text.endswith("(not sent to xboard)"):
            self.counts["chatter"] += 1
            self.fail(line_no, "a log-only line reached the front end: %r" % text)
        else:
            self.counts["chatter"] += 1
            if self.allow_chatter:
                if self.counts["chatter"] <= 3:
                    self.note(line_no, "not a protocol line: %r" % text)
            else:
                self.fail(line_no, "not a protocol line: %r" % text)

    def engine_move(self, line_no, text):
        self.counts["moves"] += 1
        if self.position is None:
            self.counts["unchecked"] += 1
            return
        if self.game_over or self.late_ping is not None:
            self.note(line_no, "move %s arrived after the game had ended (not checked)" % text)
            return
        move = self.position.parse_move(text)
        if move is None:
            self.counts["illegal"] += 1
            self.fail(line_no, "illegal move %s in %s" % (text, self.position.fen()))
            self.game_over = True
            return
        self.history.append(self.position)
        self.position = self.position.play(move)

    def pong(self, line_no, arg):
        if arg in self.pings:
            skipped = self.pings[:self.pings.index(arg)]
            if skipped:
                self.counts["pong_errors"] += len(skipped)
                self.fail(line_no, "pong %s came before pong for ping %s" % (arg, ", ".join(skipped)))
            self.pings = self.pings[self.pings.index(arg) + 1:]
            self.sent_after_ping = set()
            if arg == self.late_ping:
                self.late_ping = None
        else:
            self.counts["pong_errors"] += 1
            self.fail(line_no, "pong %s answers no outstanding ping" % arg)

    def illegal_move_reply(self, line_no, text):
        m = re.match(r"Illegal move(?: \([^)]*\))?: *(\S+)", text)
        if not m or self.position is None:
            return
        candidate = m.group(1)
        # The front end's last move was already applied; the engine rejected it, so judge it
        # in the position before it.
        if self.history and getattr(self, "last_move_text", None) == candidate:
            before = self.history[-1]
            if before.parse_move(candidate) is not None:
                self.counts["rejected"] += 1
                self.fail(line_no, "engine rejected the legal move %s in %s" % (candidate, before.fen()))
                return
        self.note(line_no, "engine answered: %s" % text)

    def finish(self, line_no):
        # For our own engine a move that could not be followed is no pass.
        if self.counts["unchecked"] and not self.allow_chatter:
            self.fail(line_no, "%d moves could not be checked (position unknown)" % self.counts["unchecked"])
        # At the end of a match xboard sends "ping" and then "quit" without waiting: only
        # that is excused.
        if self.pings and not self.sent_after_ping <= {"quit", "ping"}:
            self.counts["pong_errors"] += len(self.pings)
            self.fail(line_no, "ping %s never answered" % ", ".join(self.pings))

    def check(self):
        try:
            with open(self.path, encoding="utf-8", errors="replace") as log:
                lines = log.read().split("\n")
        except OSError as error:
            raise SystemExit("check-protocol-log: %s" % error)
        in_send = False
        for no, line in enumerate(lines, 1):
            m = LOG_LINE.match(line)
            if m:
                direction, who, text = m.group(2), m.group(3).strip(), m.group(4)
                in_send = direction == ">" and who == self.engine
                if who != self.engine:
                    continue
                if direction == ">":
                    self.sent(no, text)
                else:
                    self.received(no, text)
            elif in_send and CONTINUATION.match(line):
                self.sent(no, line)
            else:
                in_send = False
        self.finish(len(lines))
        return not self.failures


def self_test():
    """Perft counts of well-known positions, and SAN round trips."""
    cases = [(START_FEN, 3, 8902),
             ("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 2, 2039),
             ("8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 4, 43238),
             ("r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 3, 9467),
             ("rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 3, 62379)]
    ok = True
    for fen, depth, expected in cases:
        got = perft(Position(fen), depth)
        if got != expected:
            print("perft %d of %s: %d, expected %d" % (depth, fen, got, expected))
            ok = False
    for fen in (c[0] for c in cases):
        pos = Position(fen)
        for move in pos.legal_moves():
            san = pos.san(move)
            if pos.parse_move(san) != move:
                print("SAN %s of %s does not read back" % (san, fen))
                ok = False
    if Position(cases[1][0]).fen() != cases[1][0]:
        print("FEN does not round-trip")
        ok = False
    ok = log_self_test() and ok
    print("self-test %s" % ("passed" if ok else "FAILED"))
    return 0 if ok else 1


SAMPLE_LOG = """\
100 >first : xboard
protover 2
101 <first :  
101 <first : feature ping=1 setboard=1 san=1 usermove=1 done=1
102 >first : new
random
102 >first : usermove e4
103 <first : move c5
103 >first : usermove 103 >first : Nf3
104 <first : # a comment
104 <first : telluser two lines\tjoined
104 <first : move Nc6
105 >first : ping 1
105 <first : pong 1
106 >first : setboard r3k2r/1P6/8/3pP3/8/8/8/R3K2R w KQkq d6 0 1
107 <first : move exd6
107 >first : usermove O-O
108 <first : move bxa8=Q+
108 >first : usermove Kg7
109 <first : move O-O-O
109 <first : 1/2-1/2 {Fifthy move rule}
110 >first : new
110 >first : usermove d4
111 <first : move Qd5
111 >first : new
111 >first : usermove e4
112 <first : Illegal move: e4
112 <first : Error (unknown command): hello
112 >first : ping 2
112 >first : ping 3
113 <first : pong 3
113 <first : pong 7
114 <first : 5 20 10 1234 e4 e5
114 >first : post
115 <first : 5 20 10 1234 e4 e5 Nf3 
115 >first : nopost
116 <first : Hello there
116 <first : New pv-move candidate found: e4 (not sent to xboard)
116 >first : result 0-1 {White wins on time}
116 >first : force
116 >first : ping 10
116 >first : new
116 >first : setboard 8/8/8/8/8/8/8/K6k w - - 0 1
116 <first : move Re6
116 <first : pong 10
116 >first : usermove Kb1
116 <first : move Kg2
117 >first : ping 9
117 >first : new
"""


def log_self_test():
    """A made-up log with one of each fault: each must be found, and nothing else."""
    import os
    import tempfile
    with tempfile.NamedTemporaryFile("w", suffix=".debug", delete=False) as sample:
        sample.write(SAMPLE_LOG)
    try:
        log = EngineLog(sample.name, "first", False)
        log.check()
    finally:
        os.unlink(sample.name)
    expected = dict(moves=8, unchecked=0, illegal=1, rejected=1, pings=5, pong_errors=3,
                    chatter=2, thinking_unposted=1, errors=1)
    if log.counts != expected or len(log.failures) != 9:
        print("sample log: counts %s, expected %s" % (log.counts, expected))
        print("\n".join(log.failures))
        return False
    return True


def main(argv):
    engine, allow_chatter, quiet, paths = "first", False, False, []
    args = iter(argv)
    for arg in args:
        if arg == "--engine":
            engine = next(args, "")
            if engine not in ("first", "second"):
                print("--engine takes first or second", file=sys.stderr)
                return 2
        elif arg == "--allow-chatter":
            allow_chatter = True
        elif arg == "--quiet":
            quiet = True
        elif arg == "--self-test":
            return self_test()
        elif arg in ("-h", "--help"):
            print(__doc__.strip())
            return 0
        elif arg.startswith("-"):
            print("unknown option %s (try --help)" % arg, file=sys.stderr)
            return 2
        else:
            paths.append(arg)
    if not paths:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    total = dict(logs=0, failures=0)
    all_ok = True
    for path in paths:
        log = EngineLog(path, engine, allow_chatter)
        ok = log.check()
        all_ok = all_ok and ok
        total["logs"] += 1
        total["failures"] += len(log.failures)
        for key, value in log.counts.items():
            total[key] = total.get(key, 0) + value
        if not quiet:
            for text in log.failures[:20]:
                print("FAIL " + text)
            if len(log.failures) > 20:
                print("FAIL %s: ... and %d more" % (path, len(log.failures) - 20))
            for text in log.notes[:10]:
                print("note " + text)
            if len(log.notes) > 10:
                print("note %s: ... and %d more notes" % (path, len(log.notes) - 10))
    print("summary: " + " ".join("%s=%d" % item for item in total.items()))
    return 0 if all_ok else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
