#!/usr/bin/env python3
"""Runs an EPD test suite through an engine that speaks the XBoard protocol.

Each position is set up with setboard and searched for a fixed time; the move played is compared
with the `bm` moves (any of them solves it) and against the `am` moves (none of them may be played).
Moves are compared in SAN without check marks. With --nodes N the engine is spoken to in UCI and
searches N nodes a position instead, so that the count does not depend on the load of the machine;
the suite's moves are then put into coordinates by Debian's pgn-extract. Every miss is printed with what the engine played
and its last score, then "solved N of M". With `dm N` in a record, the position counts as solved
only when the engine also reports mate in exactly N moves.
"""
import argparse
import os
import re
import queue
import subprocess
import sys
import threading
import time

MATE = 32767
MATE_RANGE = 31766


def parse_epd(line):
    """The four FEN fields and the operations of one EPD record, or None for a blank line."""
    line = line.replace("\0", " ").strip()
    if not line or line.startswith("#"):
        return None
    tokens = line.split()
    if len(tokens) < 4:
        raise ValueError("not an EPD record: " + line)
    # "w - -1 12": a file that lost the space between the en-passant field and the counters.
    if re.fullmatch(r"-\d+", tokens[3]):
        tokens[3:4] = ["-", tokens[3][1:]]
    fen = " ".join(tokens[:4])
    rest = " ".join(tokens[4:])
    # Some files carry the two move counters after the four fields: skip numbers before the
    # first operation.
    rest = re.sub(r"^(\s*-?\d+)*\s*;?", "", rest)
    ops = {}
    for op in rest.split(";"):
        words = op.split()
        if not words:
            continue
        code, operands = words[0], words[1:]
        ops[code] = [w.strip('"') for w in operands]
    return fen, ops


def normalise(san):
    return san.rstrip("+#!?")


def move_list(operands):
    # "Qd1 +" in some files: a lone check mark belongs to the move before it.
    return [normalise(w) for w in operands if normalise(w)]


def mate_moves(score):
    """Mate distance in moves from a score in centipawns, positive when the engine mates."""
    if score > MATE_RANGE:
        return (MATE - score + 1) // 2
    if score < -MATE_RANGE:
        return -((MATE + score) // 2)
    return None


def start(command):
    """The engine's process, and a queue that a reader thread fills with its output lines (select on
    the pipe would miss lines that the file object has already buffered)."""
    proc = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
    lines = queue.Queue()

    def pump():
        for line in proc.stdout:
            lines.put(line)
        lines.put(None)

    threading.Thread(target=pump, daemon=True).start()
    return proc, lines


class Engine:
    def __init__(self, command):
        self.proc, self.lines = start(command)
        self.send("xboard")
        self.send("protover 2")
        self.send("post")

    def send(self, line):
        self.proc.stdin.write(line + "\n")
        self.proc.stdin.flush()

    def read_line(self, deadline):
        try:
            return self.lines.get(timeout=max(0.0, deadline - time.time()))
        except queue.Empty:
            return None

    def search(self, fen, seconds):
        """Plays one move from fen; returns (move, last score) or (None, None)."""
        self.send("new")
        self.send("force")
        self.send("setboard " + fen + " 0 1")
        self.send("st " + str(seconds))
        self.send("go")
        score = None
        deadline = time.time() + seconds * 3 + 10
        while True:
            line = self.read_line(deadline)
            if not line:
                return None, score
            words = line.split()
            if len(words) >= 2 and words[0] == "move":
                return words[1], score
            if len(words) >= 4 and words[0].isdigit() and re.fullmatch(r"-?\d+", words[1]):
                score = int(words[1])

    def close(self):
        try:
            self.send("quit")
            self.proc.wait(timeout=5)
        except Exception:
            self.proc.kill()


class UciEngine:
    """An engine spoken to in UCI that searches a fixed number of nodes a position."""

    def __init__(self, command):
        self.proc, self.lines = start(command)
        self.send("uci")
        self.wait_for("uciok", time.time() + 30)

    send = Engine.send
    read_line = Engine.read_line
    close = Engine.close

    def wait_for(self, word, deadline):
        while True:
            line = self.read_line(deadline)
            if not line or line.split()[:1] == [word]:
                return line

    def search(self, fen, nodes):
        """The move for fen after `nodes` nodes, in coordinates, and the last score."""
        self.send("ucinewgame")
        self.send("position fen " + fen + " 0 1")
        self.send("go nodes " + str(nodes))
        score = None
        deadline = time.time() + 600
        while True:
            line = self.read_line(deadline)
            if not line:
                return None, score
            words = line.split()
            if words[:1] == ["bestmove"]:
                return words[1], score
            if "score" in words and "lowerbound" not in words and "upperbound" not in words:
                kind, value = words[words.index("score") + 1:words.index("score") + 3]
                value = int(value)
                score = value if kind == "cp" else (MATE + 1 - 2 * value if value > 0 else -MATE - 2 * value)


def to_coordinates(records):
    """Every bm and am move of the records in coordinates, keyed by (fen, san), via pgn-extract. A
    move that it cannot read (an ambiguous one, say) is left out, and matches nothing."""
    games, keys = [], []
    for fen, ops in records:
        black = fen.split()[1] == "b"
        for san in move_list(ops.get("bm", [])) + move_list(ops.get("am", [])):
            games.append('[Round "%d"]\n[SetUp "1"]\n[FEN "%s 0 1"]\n\n1.%s %s *\n'
                         % (len(keys), fen, ".." if black else "", san))
            keys.append((fen, san))
    try:
        result = subprocess.run(["/usr/games/pgn-extract", "-Wuci", "--noresults", "-C", "-N", "-V"],
                                input="\n".join(games), capture_output=True, text=True)
    except FileNotFoundError:
        sys.exit("--nodes needs pgn-extract (Debian package pgn-extract)")
    coordinates, number = {}, None
    for line in result.stdout.splitlines():
        tag = re.match(r'\[Round "(\d+)"\]', line)
        if tag:
            number = int(tag.group(1))
        elif line.strip() and not line.startswith("[") and number is not None:
            coordinates[keys[number]] = line.split()[0]
            number = None
    return coordinates


def score_text(score):
    if score is None:
        return "no score"
    mate = mate_moves(score)
    if mate is not None:
        return ("#" if mate > 0 else "-#") + str(abs(mate))
    return "%+.2f" % (score / 100)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("file")
    parser.add_argument("seconds", type=int, nargs="?", default=1)
    parser.add_argument("--nodes", type=int, default=0, help="search N nodes a position (UCI) instead of a time")
    parser.add_argument("--engine", default=None, help="engine command (default build/zephrin)")
    args = parser.parse_args()
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    command = args.engine.split() if args.engine else [os.path.join(root, "build", "zephrin")]

    records = []
    with open(args.file) as f:
        for number, line in enumerate(f, 1):
            try:
                parsed = parse_epd(line)
            except ValueError as error:
                print("line %d: %s" % (number, error), file=sys.stderr)
                continue
            if parsed:
                records.append(parsed)

    coordinates = to_coordinates(records) if args.nodes else None
    make_engine = (lambda: UciEngine(command)) if args.nodes else (lambda: Engine(command))
    limit = args.nodes or args.seconds
    engine = make_engine()
    solved = 0
    try:
        for index, (fen, ops) in enumerate(records, 1):
            name = " ".join(ops.get("id", [])) or "#%d" % index
            best, avoid = move_list(ops.get("bm", [])), move_list(ops.get("am", []))
            move, score = engine.search(fen, limit)
            if move is None:
                print("%s: no move from the engine (%s)" % (name, fen))
                engine.close()
                engine = make_engine()
                continue
            played = normalise(move)
            if coordinates is not None:
                best = [coordinates.get((fen, m), "?" + m) for m in best]
                avoid = [coordinates.get((fen, m), "?" + m) for m in avoid]
            ok = (not best or played in best) and played not in avoid
            if ok and "dm" in ops:
                ok = score is not None and mate_moves(score) == int(ops["dm"][0])
            if ok:
                solved += 1
            else:
                wanted = " ".join(best) if best else "not " + " ".join(avoid)
                dm = " #" + ops["dm"][0] if "dm" in ops else ""
                print("%s: played %s (%s), wanted %s%s" % (name, move, score_text(score), wanted, dm))
    finally:
        engine.close()
    print("solved %d of %d" % (solved, len(records)))


if __name__ == "__main__":
    main()
