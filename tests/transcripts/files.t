What is no file is never waited for.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ mkfifo pipe
  $ timeout 10 ktcfg restore_cfg -f pipe
  SG driver version 3.5.36.
  Error: Failed open pipe !
  [1]
  $ timeout 10 ktsetup ver -output pipe
  $ KTRAID_SIM_TRACE=pipe timeout 10 ktsetup ver
  ktraid-sim: the trace is incomplete: pipe: No such device or address
  SG driver version 3.5.36.
  CLI Version: *   RaidAPI Version: * (simulated) (glob)
  $ KTRAID_SIM_TRACE=/dev/null ktsetup ver > /dev/null
  ktraid-sim: the trace is incomplete: /dev/null: this is not a file

A pipe that is read takes output, as terminals and other devices do.

  $ timeout 10 cat pipe > read & sleep 0.3; timeout 10 ktsetup ver -output pipe; wait; cat read
  SG driver version 3.5.36.
  CLI Version: *   RaidAPI Version: * (simulated) (glob)
  $ ktsetup ver -output /dev/stdout | tail -1
  CLI Version: *   RaidAPI Version: * (simulated) (glob)
  $ ktsetup ver -output /dev/full
  ktsetup: cannot write the output: No space left on device
  [1]

Where no state can be, no folders are left behind.

  $ long=$(printf 'x%.0s' {1..300})
  $ for name in a/b/ "a/b/$long" read/b/state.db "a/$long/b"; do KTRAID_SIM="$name" ktsetup ver > /dev/null 2>&1; echo $?; done | uniq -c
        4 1
  $ ktsim --state "a/b/$long" create 2> /dev/null
  [1]
  $ ls -d a
  ls: cannot access 'a': No such file or directory
  [2]

A name is a name, whatever it begins with.

  $ for name in file:memdb?mode=memory :memory: a/b/state.db; do
  >   KTRAID_SIM="$name" ktsetup adapter -i 0 > /dev/null && test -s "$name" || echo "no $name"; done

Building and starting writes to no file that others could have put there.

  $ mkdir -p top/tools top/build/release/bin temporary programs && cp "$TESTDIR/../../run" top/ && touch top/build/release/build.ninja
  $ echo 'need_packages() { :; }; BUILD_PACKAGES=()' > top/tools/prepare
  $ printf '#!/bin/sh\nls "$TMPDIR"\necho built "$@"\nexit $FAILURE\n' > programs/cmake
  $ for program in ktsetup ktcfg ktreport ktsim; do
  >   printf '#!/bin/sh\necho started: "${0##*/}" "$@"\n' > top/build/release/bin/$program
  > done
  $ chmod +x programs/cmake top/build/release/bin/*
  $ start() { TMPDIR="$PWD/temporary" PATH="$PWD/programs:$PATH" top/run "$@"; }
  $ FAILURE=0 start info -o hba
  started: ktsetup info -o hba
  $ FAILURE=1 start info -o hba
  built --build build/release --target ktraid ktsetup
  The build failed.
  [1]

It starts the program that the first word names, and builds what that one starts in its turn.

  $ FAILURE=0 start ktreport map --csv
  started: ktreport map --csv
  $ FAILURE=1 start ktreport map --csv
  built --build build/release --target ktraid ktreport
  The build failed.
  [1]
  $ FAILURE=1 start ktsim status 2>&1 | head -1
  built --build build/release --target ktraid ktsim
  $ FAILURE=1 start ktsim rehearse -- ktsetup ver 2>&1 | head -1
  built --build build/release --target ktraid ktsetup ktcfg ktreport ktsim
  $ FAILURE=1 start ktcfg plan -f wanted.json 2>&1 | head -1
  built --build build/release --target ktraid ktsetup ktcfg ktreport ktsim
