#!/usr/bin/env bash
# Plays a match between two chess engines through the real XBoard front end under a virtual
# display, and judges it: results, Elo difference, illegal moves, time forfeits, crashes,
# unfinished games and the protocol traffic of the first engine.
#
# Games are played in pairs from the positions of an opening file, each pair with one xboard
# run, so that every position is played with both colours and a crash costs at most one pair.
# The exit status is 0 only when no game had an illegal move, a time forfeit, a crash or no
# proper end, and the first engine's protocol log is clean.
set -u

usage() {
  cat <<'EOF'
Usage: bench/match.sh [options]

  -n, --games N         games to play (default 4); positions rotate every two games
  -o, --opponent ENGINE fairymax, phalanx, hoichess, sjeng, gnuchess (XBoard), glaurung, toga2,
                        stockfish or stockfish:LEVEL (Skill Level 0-20) (UCI); or any engine as a
                        command, "path [arguments]", spoken to in XBoard, or "uci:path
                        [arguments]", spoken to in UCI; default fairymax
  -f, --first ENGINE    first engine, in the same forms (default build/zephrin);
                        "uci:build/zephrin" plays Zephrin itself through UCI
      --tc TIME         base time per game, in minutes or m:ss (default 0:05, five seconds)
      --inc SECONDS     increment per move (default 0.1; 0 with --mps)
      --mps N           conventional control: N moves in TIME, repeating (xboard -mps);
                        no increment. "--mps 40 --tc 0:10" sends "level 40 0:10 0"
      --ponder          let both engines ponder (default: no pondering)
      --post            have the engines send thinking output (default: "post" is never
                        sent, and the first engine must then send nothing but protocol lines)
      --openings FILE   one FEN per line, '#' starts a comment (default bench/openings.fen)
      --start K         begin with the K-th opening (default 1)
  -d, --out DIR         output directory (default /tmp/zephrin-match-DATE-TIME)
      --timeout SECONDS limit for one pair of games (default from the time control)
      --strict          the first engine may send nothing but protocol lines (the default
                        for zephrin)
      --lenient         other output of the first engine is only noted (the default for
                        other engines, which talk freely)
      --first-faults    judge only the first engine's faults: the opponent's illegal moves,
                        time forfeits and crashes are reported but do not fail the match
      --quiet           print only the summary
  -h, --help            this text

UCI engines play through polyglot, which xboard starts for them (-fUCI/-sUCI).
The output directory receives games.pgn, logs/xboard-NN.debug (protocol traffic),
logs/xboard-NN.out, logs/protocol-check.txt and summary.txt.
Exit status: 0 when every game ended properly without an illegal move, a time forfeit or a
crash, and the first engine's protocol log is clean; 1 otherwise; 2 for bad arguments.
EOF
}

here=$(cd "$(dirname "$0")" && pwd)
export PATH="$PATH:/usr/games"
root=$(cd "$here/.." && pwd)

games=4 opponent=fairymax first="$root/build/zephrin" tc=0:05 inc=0.1 mps=0 ponder=0 post=0
openings="$here/openings.fen" start=1 out="" pair_timeout="" quiet=0 strict=auto judged=both
while [ $# -gt 0 ]; do
  case "$1" in
    -n|--games) games=$2; shift ;;
    -o|--opponent) opponent=$2; shift ;;
    -f|--first) first=$2; shift ;;
    --tc) tc=$2; shift ;;
    --inc) inc=$2; shift ;;
    --mps) mps=$2; shift ;;
    --ponder) ponder=1 ;;
    --post) post=1 ;;
    --openings) openings=$2; shift ;;
    --start) start=$2; shift ;;
    -d|--out) out=$2; shift ;;
    --timeout) pair_timeout=$2; shift ;;
    --quiet) quiet=1 ;;
    --first-faults) judged=first ;;
    --strict) strict=1 ;;
    --lenient) strict=0 ;;
    -h|--help) usage; exit 0 ;;
    *) echo "match.sh: unknown argument '$1' (try --help)" >&2; exit 2 ;;
  esac
  [ $# -gt 0 ] && shift
done

die() { echo "match.sh: $*" >&2; exit 2; }
say() { [ "$quiet" = 1 ] || echo "$@"; }

[[ "$games" =~ ^[1-9][0-9]*$ ]] || die "--games needs a positive number"
[[ "$start" =~ ^[1-9][0-9]*$ ]] || die "--start needs a positive number"
[[ "$tc" =~ ^[0-9]+(:[0-5][0-9])?$ ]] || die "--tc takes minutes or m:ss, e.g. 0:05 or 2"
[[ "$inc" =~ ^[0-9]+(\.[0-9]+)?$ ]] || die "--inc takes seconds, e.g. 0.1"
[[ "$mps" =~ ^[0-9]+$ ]] || die "--mps needs a number of moves"
# xboard gives no increment with a move count, so --mps clears the default one.
if [ "$mps" -gt 0 ]; then
  inc=0
fi
[ -z "$pair_timeout" ] || [[ "$pair_timeout" =~ ^[1-9][0-9]*$ ]] || die "--timeout needs seconds"
[ -r "$openings" ] || die "cannot read the opening file $openings"

# An engine by name or command: sets engine_cmd, engine_uci (1 for UCI), engine_pkg and engine_opts.
resolve_engine() {
  local engine_arg=$1
  engine_uci=0 engine_pkg="" engine_opts=""
  case "$engine_arg" in
    uci:*)
      resolve_engine "${engine_arg#uci:}"
      engine_uci=1 engine_pkg="$engine_pkg polyglot"
      return ;;
  esac
  # A command with arguments: the program is found as below, the arguments stay.
  local engine_args=""
  case "$engine_arg" in
    *" "*) engine_args=" ${engine_arg#* }" engine_arg=${engine_arg%% *} ;;
  esac
  case "$engine_arg" in
    fairymax) engine_cmd=/usr/games/fairymax engine_pkg=fairymax ;;
    phalanx) engine_cmd=/usr/games/phalanx engine_pkg=phalanx ;;
    hoichess) engine_cmd="/usr/games/hoichess -x" engine_pkg=hoichess ;;
    sjeng) engine_cmd=/usr/games/sjeng engine_pkg=sjeng ;;
    gnuchess) engine_cmd="/usr/games/gnuchess --xboard" engine_pkg=gnuchess ;;
    glaurung) engine_cmd=/usr/games/glaurung engine_pkg="glaurung polyglot" engine_uci=1 ;;
    toga2) engine_cmd=/usr/games/toga2 engine_pkg="toga2 polyglot" engine_uci=1 ;;
    stockfish|stockfish:*)
      engine_cmd=/usr/games/stockfish engine_pkg="stockfish polyglot" engine_uci=1
      if [ "$engine_arg" != stockfish ]; then
        local level=${engine_arg#stockfish:}
        [[ "$level" =~ ^([0-9]|1[0-9]|20)$ ]] || die "stockfish skill level must be 0-20, not '$level'"
        engine_opts="Skill Level=$level"
      fi ;;
    */*)
      [ -x "$engine_arg" ] || die "no executable engine at $engine_arg (build it first?)"
      engine_cmd=$(cd "$(dirname "$engine_arg")" && pwd)/$(basename "$engine_arg") ;;
    *)
      local found
      found=$(PATH="$PATH:/usr/games" command -v "$engine_arg") || die "unknown engine '$engine_arg'"
      engine_cmd=$found ;;
  esac
  engine_cmd+=$engine_args
}

resolve_engine "$first"
first_cmd=$engine_cmd first_uci=$engine_uci first_pkg=$engine_pkg first_opts=$engine_opts
resolve_engine "$opponent"
second_cmd=$engine_cmd second_uci=$engine_uci second_pkg=$engine_pkg second_opts=$engine_opts

# Install what is missing (as root), or say what is.
needed=(xboard xvfb python3 $first_pkg $second_pkg)
missing=()
for pkg in "${needed[@]}"; do
  dpkg -s "$pkg" >/dev/null 2>&1 || missing+=("$pkg")
done
if [ ${#missing[@]} -gt 0 ]; then
  if [ "$(id -u)" -eq 0 ]; then
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    { apt-get update -qq && apt-get install -y -qq "${missing[@]}"; } >/dev/null || die "installation failed"
  else
    die "please install first: sudo apt-get install ${missing[*]}"
  fi
fi
for cmd in "${first_cmd%% *}" "${second_cmd%% *}"; do
  case "$cmd" in /*) [ -x "$cmd" ] || die "engine binary $cmd is missing" ;; esac
done

# Output directory.
[ -n "$out" ] || out="${TMPDIR:-/tmp}/zephrin-match-$(date +%Y%m%d-%H%M%S)"
mkdir -p "$out/logs" "$out/pgn" "$out/status" || die "cannot create $out"
out=$(cd "$out" && pwd)
case "$out" in *[[:space:]]*) die "the output directory must not contain blanks" ;; esac
rm -f "$out"/pgn/* "$out"/status/* "$out"/logs/* "$out/games.pgn" "$out/pairs.tsv"

# The openings, without comments and blank lines, rotated to begin at --start.
mapfile -t positions < <(sed -e 's/#.*//' -e 's/[[:space:]]*$//' -e '/^[[:space:]]*$/d' "$openings")
[ ${#positions[@]} -gt 0 ] || die "no positions in $openings"
[ "$start" -le ${#positions[@]} ] || die "--start $start is beyond the ${#positions[@]} positions"
python3 - "$here/check-protocol-log.py" "${positions[@]}" <<'PY' || die "bad position in $openings"
import importlib.util, sys
module_spec = importlib.util.spec_from_file_location("checker", sys.argv[1])
checker = importlib.util.module_from_spec(module_spec)
module_spec.loader.exec_module(checker)
for number, fen in enumerate(sys.argv[2:], 1):
    try:
        if not checker.Position(fen).legal_moves():
            raise ValueError("the game is already over")
    except ValueError as error:
        sys.exit("position %d, %s: %s" % (number, fen, error))
PY
mapfile -t names < <(sed -e '/^[[:space:]]*$/d' -e '/^[[:space:]]*#/d' "$openings" | sed -n 's/.*#[[:space:]]*//p;t;s/.*//p')

# Each engine runs under a small guard that records how its process ended, so that a crash
# is told apart from a time forfeit, which is all xboard itself reports for an engine that
# died while on move.
cat >"$out/engine-guard.py" <<'EOF'
import signal, subprocess, sys, time
status_file, command = sys.argv[1], sys.argv[2:]
def record(code):
    with open(status_file, "a") as f:
        f.write("%d %.3f\n" % (code, time.time()))
try:
    child = subprocess.Popen(command)
except OSError as error:
    print("cannot start %s: %s" % (command[0], error), flush=True)
    record(127)
    sys.exit(127)
def forward(signum, frame):
    try:
        child.send_signal(signum)
    except ProcessLookupError:
        pass
for signum in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
    signal.signal(signum, forward)
code = child.wait()
record(code)
sys.exit(code if code >= 0 else 128 - code)
EOF

# The time a pair may take: both clocks run down over a long game, plus start-up and pauses.
base_seconds=$(awk -v t="$tc" 'BEGIN { n = split(t, p, ":"); print (n == 2 ? p[1] * 60 + p[2] : p[1] * 60) }')
[ "$base_seconds" -gt 0 ] || die "--tc must give some time"
if [ -z "$pair_timeout" ]; then
  # With a move count, a long game (150 moves a side) sees the base time that often renewed.
  pair_timeout=$(awk -v b="$base_seconds" -v i="$inc" -v m="$mps" \
    'BEGIN { t = m > 0 ? b * int((150 + m - 1) / m) : b + 300 * i; printf "%d", 2 * (2 * t + 15) + 60 }')
fi

# Stops the xboard of pair $1, if it still runs; and on an interrupt of the whole match.
stop_xboard() {
  local pid
  pid=$(cat "$out/status/xboard-$1.pid" 2>/dev/null) || return 0
  date +%s.%N >"$out/status/stopped-$1"
  kill -TERM "$pid" 2>/dev/null || return 0
  sleep 2
  kill -KILL "$pid" 2>/dev/null
  echo "match.sh: xboard stopped" >>"$out/logs/xboard-$1.out"
}
trap '[ -z "${nn:-}" ] || stop_xboard "$nn"; exit 130' INT TERM

ponder_flag=-xponder
[ "$ponder" = 1 ] && ponder_flag=-ponder
# xboard sends "post" unless thinking output is neither shown nor wanted for adjudication.
post_flags=(-showThinking false -hideThinkingFromHuman true)
[ "$post" = 1 ] && post_flags=(-showThinking true)

control="$tc + $inc s"
clock=(-tc "$tc" -inc "$inc")
if [ "$mps" -gt 0 ]; then
  control="$mps moves in $tc, repeating"
  clock=(-mps "$mps" -tc "$tc")
fi
say "Match: $first against $opponent, $games games at $control, output in $out"
pairs=$(( (games + 1) / 2 ))
for ((pair = 1; pair <= pairs; pair++)); do
  nn=$(printf %02d "$pair")
  in_pair=2
  [ $((pair * 2)) -gt "$games" ] && in_pair=1
  index=$(( (start - 1 + pair - 1) % ${#positions[@]} ))
  echo "${positions[$index]}" >"$out/status/position-$nn.fen"
  args=(-fcp "python3 $out/engine-guard.py $out/status/first-$nn $first_cmd" -fd "$out"
        -scp "python3 $out/engine-guard.py $out/status/second-$nn $second_cmd" -sd "$out"
        -mg "$in_pair" "${clock[@]}" "$ponder_flag" "${post_flags[@]}" -autoCallFlag true -matchPause 1000
        -lpf "$out/status/position-$nn.fen" -lpi 1
        -saveGameFile "$out/pgn/$nn.pgn" -debugMode true -nameOfDebugFile "$out/logs/xboard-$nn.debug"
        -popupExitMessage false -saveSettingsOnExit false -soundProgram "" -noGUI)
  # polyglot, which speaks for a UCI engine, keeps the UCI traffic in logs/polyglot-NN.log.
  if [ "$first_uci" = 1 ] || [ "$second_uci" = 1 ]; then
    args+=(-adapterCommand "polyglot -noini -log true -lf \"$out/logs/polyglot-$nn.log\" -ec \"%fcp\" -ed \"%fd\"")
  fi
  [ "$first_uci" = 1 ] && args+=(-fUCI)
  [ "$second_uci" = 1 ] && args+=(-sUCI)
  [ -n "$first_opts" ] && args+=(-firstOptions "$first_opts")
  [ -n "$second_opts" ] && args+=(-secondOptions "$second_opts")
  # xboard runs under a virtual display; its own process id goes to a file so that it can be
  # stopped when it hangs: it ignores SIGTERM, and after an engine has died it may wait for ever
  # on an error popup. It gets the time to finish the game on the clock, then it is stopped.
  rm -f "$out/status/xboard-$nn.pid"
  (cd "$out" && exec xvfb-run -a sh -c 'echo $$ >"$0"; exec xboard "$@"' "$out/status/xboard-$nn.pid" "${args[@]}") \
    >"$out/logs/xboard-$nn.out" 2>&1 </dev/null &
  run_pid=$!
  limit=$((SECONDS + pair_timeout)) died="" stopped=""
  while kill -0 "$run_pid" 2>/dev/null; do
    sleep 1
    if [ -z "$died" ] && cat "$out/status/first-$nn" "$out/status/second-$nn" 2>/dev/null | grep -qvE -- '^(0|-2|-9|-15) '; then
      died=1 limit=$((SECONDS + 2 * base_seconds + 15))
    fi
    if [ "$SECONDS" -ge "$limit" ]; then
      stopped=${died:+crash}
      stopped=${stopped:-timeout}
      stop_xboard "$nn"
      break
    fi
  done
  wait "$run_pid"
  rc=$?
  score=$(sed -n 's/.*final score \([0-9]*-[0-9]*-[0-9]*\).*/\1/p' "$out/logs/xboard-$nn.out" | tail -n 1)
  printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$nn" "$in_pair" "$rc" "${score:--}" "${stopped:--}" "${names[$index]:-}" >>"$out/pairs.tsv"
  say "pair $nn (${names[$index]:-position $((index + 1))}): xboard exit $rc, score ${score:-none}"
done
cat "$out"/pgn/*.pgn >"$out/games.pgn" 2>/dev/null
# What UCI engines refused or complained about, as polyglot logged it.
if ls "$out"/logs/polyglot-*.log >/dev/null 2>&1; then
  grep -h "Engine->Adapter: info string" "$out"/logs/polyglot-*.log >"$out/logs/uci-info-strings.txt"
  say "UCI engines sent $(wc -l <"$out/logs/uci-info-strings.txt") info string lines (logs/uci-info-strings.txt)"
fi

# The first engine's protocol traffic. Foreign engines may talk freely; ours may not, unless
# polyglot speaks for it.
case "$strict" in
  auto) [ "$(basename "${first_cmd%% *}")" = zephrin ] && [ "$first_uci" = 0 ] && strict=1 || strict=0 ;;
esac
chatter=""
[ "$strict" = 1 ] || chatter=--allow-chatter
python3 "$here/check-protocol-log.py" $chatter "$out"/logs/xboard-*.debug >"$out/logs/protocol-check.txt" 2>&1

python3 - "$out" "$games" "$first" "$opponent" "$judged" <<'EOF' | tee "$out/summary.txt"
import math, os, re, signal, sys

out, expected, first_name, second_name = sys.argv[1], int(sys.argv[2]), sys.argv[3], sys.argv[4]
sides = ("first", "second")
judged = sides if sys.argv[5] == "both" else ("first",)
count = {what: {s: 0 for s in sides} for what in ("illegal", "forfeit", "crash")}
wins = draws = losses = unfinished = 0
reasons = {}
notes = []

def pgn_games(path):
    try:
        text = open(path, encoding="utf-8", errors="replace").read()
    except OSError:
        return []
    games = []
    for chunk in re.split(r"(?m)^(?=\[Event )", text):
        if not chunk.strip():
            continue
        tag = re.search(r'(?m)^\[Result "([^"]*)"\]', chunk)
        result = tag.group(1) if tag else "*"
        end = re.search(r"\{([^{}]*)\}\s*(1-0|0-1|1/2-1/2|\*)\s*$", chunk)
        games.append((result, end.group(1).strip() if end else ""))
    return games

def crashed(status_path, stopped_at):
    """Abnormal ends of the engine processes: a fatal signal or a non-zero exit status, before
    match.sh had to stop xboard (after which an engine may die of a broken pipe)."""
    try:
        ends = [line.split() for line in open(status_path) if line.strip()]
    except OSError:
        return []
    codes = [int(code) for code, when in ends if float(when) < stopped_at]
    # xboard may end an engine after "quit" with SIGTERM or SIGKILL; that is no crash.
    benign = (0, -signal.SIGTERM, -signal.SIGKILL, -signal.SIGINT)
    return [code for code in codes if code not in benign]

def describe(code):
    return "killed by %s" % signal.Signals(-code).name if code < 0 else "exit status %d" % code

for row in open(os.path.join(out, "pairs.tsv")):
    nn, in_pair, rc, score, stopped, name = (row.rstrip("\n").split("\t") + [""] * 6)[:6]
    in_pair, rc = int(in_pair), int(rc)
    games = pgn_games(os.path.join(out, "pgn", nn + ".pgn"))
    try:
        stopped_at = float(open(os.path.join(out, "status", "stopped-" + nn)).read())
    except (OSError, ValueError):
        stopped_at = math.inf
    pair_crash = {s: False for s in sides}
    for s in sides:
        for code in crashed(os.path.join(out, "status", "%s-%s" % (s, nn)), stopped_at):
            pair_crash[s] = True
            notes.append("pair %s: %s engine %s" % (nn, s, describe(code)))
    # An engine that quit by itself while xboard still talked to it shows here.
    try:
        said = open(os.path.join(out, "logs", "xboard-%s.out" % nn), errors="replace").read()
    except OSError:
        said = ""
    for who in set(re.findall(r"Error (?:writing to|reading from) (first|second) chess program", said)):
        if not pair_crash[who]:
            pair_crash[who] = True
            notes.append("pair %s: %s engine went away while xboard still needed it" % (nn, who))
    died = dict(pair_crash)  # an engine that died on move loses the last game on time
    finished = 0
    for number, (result, reason) in enumerate(games, 1):
        first_white = number % 2 == 1
        if result not in ("1-0", "0-1", "1/2-1/2"):
            notes.append("pair %s game %d: no result (%s)" % (nn, number, reason or "none given"))
            continue
        finished += 1
        reasons[reason or "(no reason)"] = reasons.get(reason or "(no reason)", 0) + 1
        if result == "1/2-1/2":
            draws += 1
            loser = None
        else:
            white_won = result == "1-0"
            if white_won == first_white:
                wins += 1
                loser = "second"
            else:
                losses += 1
                loser = "first"
        text = reason.lower()
        m = re.search(r"error (?:writing to|reading from) (first|second)|(first|second) chess program", text)
        if m or "exited unexpectedly" in text or "crash" in text:
            who = (m.group(1) or m.group(2)) if m else loser
            if who:
                pair_crash[who] = True
            notes.append("pair %s game %d: %s" % (nn, number, reason))
        elif "invalid move" in text or "illegal move" in text:
            count["illegal"][loser or "first"] += 1
            notes.append("pair %s game %d: %s" % (nn, number, reason))
        elif re.search(r"on time|flag fell|time forfeit", text) and (loser or "wins on time" in text):
            # "Black wins on time but bare king" is a draw, but White's flag fell all the same.
            flag = re.search(r"(white|black) wins on time", text)
            if flag:
                loser = "first" if (flag.group(1) == "black") == first_white else "second"
            if died[loser] and number == len(games):
                notes.append("pair %s game %d: %s (the %s engine had died)" % (nn, number, reason, loser))
            else:
                count["forfeit"][loser] += 1
                notes.append("pair %s game %d: %s" % (nn, number, reason))
    unfinished += in_pair - finished
    if stopped == "timeout":
        notes.append("pair %s: xboard did not finish in time and was stopped" % nn)
    elif stopped == "crash":
        notes.append("pair %s: xboard was stopped after an engine had died" % nn)
    elif rc != 0:
        notes.append("pair %s: xboard ended with status %d%s" % (nn, rc, "" if score != "-" else ", no final score"))
    for s in sides:
        count["crash"][s] += pair_crash[s]

played = wins + draws + losses
print()
print("Match %s vs %s: %d of %d games finished" % (first_name, second_name, played, expected))
print("  +%d =%d -%d for %s" % (wins, draws, losses, first_name))
if played:
    score = (wins + draws / 2) / played
    var = (wins * (1 - score) ** 2 + draws * (0.5 - score) ** 2 + losses * score ** 2) / played
    margin = 1.96 * math.sqrt(var / played)
    def elo(s):
        if s <= 0:
            return -math.inf
        if s >= 1:
            return math.inf
        return -400 * math.log10(1 / s - 1)
    def fmt(x):
        return ("%+.0f" % x) if math.isfinite(x) else ("+inf" if x > 0 else "-inf")
    low, high = elo(score - margin), elo(score + margin)
    print("  score %.1f/%d = %.1f%%" % (wins + draws / 2, played, 100 * score))
    if var == 0:
        print("  Elo difference %s (all games alike: no error bar)" % fmt(elo(score)))
    else:
        print("  Elo difference %s, 95%% interval [%s, %s]" % (fmt(elo(score)), fmt(low), fmt(high)))
        if math.isfinite(low) and math.isfinite(high):
            print("  Elo difference %s +/- %.0f (95%%)" % (fmt(elo(score)), (high - low) / 2))
if reasons:
    print("  endings: " + "; ".join("%s x%d" % item for item in sorted(reasons.items())))
try:
    check = open(os.path.join(out, "logs", "protocol-check.txt")).read()
    m = re.search(r"^summary: (.*)$", check, re.M)
    fields = dict(item.split("=") for item in m.group(1).split()) if m else {}
except OSError:
    fields = {}
protocol_failures = int(fields.get("failures", 1)) if fields else 1
print("  illegal moves:   first %d, second %d" % (count["illegal"]["first"], count["illegal"]["second"]))
print("  time forfeits:   first %d, second %d" % (count["forfeit"]["first"], count["forfeit"]["second"]))
print("  crashes:         first %d, second %d" % (count["crash"]["first"], count["crash"]["second"]))
print("  unfinished:      %d" % unfinished)
checked = int(fields.get("moves", 0)) - int(fields.get("unchecked", 0))
print("  protocol log of the first engine: %d failures (%d of %s moves checked)%s"
      % (protocol_failures, checked, fields.get("moves", "?"),
         ", see logs/protocol-check.txt" if protocol_failures else ""))
for note in notes[:30]:
    print("  - " + note)
bad = (sum(count[what][s] for what in ("illegal", "forfeit", "crash") for s in judged)
       + unfinished + protocol_failures)
print("RESULT: %s" % ("PASS" if bad == 0 else "FAIL"))
sys.exit(0 if bad == 0 else 1)
EOF
status=${PIPESTATUS[0]}
say "Games in $out/games.pgn, protocol logs in $out/logs/"
exit "$status"
