#!/usr/bin/env python3
"""Runs an EPD test suite through an engine that speaks the XBoard protocol.

Each position is set up with setboard and searched for a fixed time; the move played is compared
with the `bm` moves (any of them solves it) and against the `am` moves (none of them may be played).
Moves are compared in SAN without check marks. Every miss is printed with what the engine played
and its last score, then "solved N of M". With `dm N` in a record, the position counts as solved
only when the engine also reports mate in exactly N moves.
"""
import argparse
import os
import re
import select
import subprocess
import sys
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


class Engine:
    def __init__(self, command):
        self.proc = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                     text=True, bufsize=1)
        self.send("xboard")
        self.send("protover 2")
        self.send("post")

    def send(self, line):
        self.proc.stdin.write(line + "\n")
        self.proc.stdin.flush()

    def read_line(self, deadline):
        ready, _, _ = select.select([self.proc.stdout], [], [], max(0.0, deadline - time.time()))
        if not ready:
            return None
        return self.proc.stdout.readline()

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
    parser.add_argument("seconds", type=int)
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

    engine = Engine(command)
    solved = 0
    try:
        for index, (fen, ops) in enumerate(records, 1):
            name = " ".join(ops.get("id", [])) or "#%d" % index
            best, avoid = move_list(ops.get("bm", [])), move_list(ops.get("am", []))
            move, score = engine.search(fen, args.seconds)
            if move is None:
                print("%s: no move from the engine (%s)" % (name, fen))
                engine.close()
                engine = Engine(command)
                continue
            played = normalise(move)
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
