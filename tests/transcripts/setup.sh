# Sourced by every transcript: the built programs on a scratch state, the clock stopped, the time zone fixed.
#   lab NAME           start over with an example lab, the clock stopped at 8 o'clock
#   joined             short lines that belong together as one, with bars between them
#   calls              the library calls since the last `calls`, one a line (from the trace)
export PATH="$BIN:$PATH" LD_LIBRARY_PATH="$SIM" TZ=UTC LC_ALL=C
export KTRAID_SIM="$PWD/state.db" KTRAID_SIM_TRACE="$PWD/trace"
unset POSIXLY_CORRECT
# The driver's line stands before every report; transcripts show what a command says.
kt() { ktsetup "$@" > .out; local status=$?; sed 1d .out; return $status; }
lab() { ktsim create --lab "$1" --force --at "2026-01-05 08:00:00" && : > trace; }
joined() { paste -sd'|' | sed 's/|/ | /g; s/ *$//'; }
calls() { cat trace; : > trace; }
