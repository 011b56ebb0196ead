What a rehearsal foretells: losses first, then what changes, how long it takes and what a failure meanwhile costs.

  $ . "$TESTDIR/setup.sh"
  $ foretold() { ktsim rehearse "$@" > told; echo "= $?"; tac told | sed '/^$/q' | tac | sed 1d; }
  $ cat > five.json << EOF
  > {"adapters": [{"disks": [{"count": 5, "size": "500GB"}], "arrays": [
  >   {"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": "data", "size": "200GB"}, {"name": "old"}]}]}]}
  > EOF
  $ lab five.json; ktsim show > before
  $ printf '# away with it\r\nktsetup delete -o vd -i 1 -f --waiveconfirmation\nktsetup help "not one" ""\n' > script
  $ printf '\tktsetup assign -d 3\n\nktsetup set -o pd -i 1 --status offline --waiveconfirmation' >> script
  $ foretold --script - < script; sed -n 's/^> /typed: /p' told; ktsim show | cmp - before
  = 0
  What would be lost:
    virtual disk 1 "old" (RAID5, 800 GB) is gone
    virtual disk 0 "data" is degraded now (was online)
    disk 1 (port 1, Gannet GT500G, serial AG00000019E37) is offline now (was healthy)
  What would change:
    virtual disk 0 "data": rebuild began
    virtual disk 0 "data" is on disks 0, 3, 2 now (was on 0, 1, 2)
    array 0 "Array_0": free size is 800 GB now (was 0 B)
    array 0 "Array_0": rebuild began
    array 0 "Array_0" is on disks 0, 3, 2 now (was on 0, 1, 2)
    disk 1 (port 1, Gannet GT500G, serial AG00000019E37) has left array 0
    disk 3 (port 3, Gannet GT500G, serial AG0000003DAA5) belongs to array 0 now
    disk 3 (port 3, Gannet GT500G, serial AG0000003DAA5) is a global spare now
    disk 3 (port 3, Gannet GT500G, serial AG0000003DAA5) is in use as a spare now
  All that goes on then has ended after 20 min at the present rates.
  For 20 min one more loss of disks 0, 2 takes virtual disk 0 "data" offline.
  typed: ktsetup delete -o vd -i 1 -f --waiveconfirmation
  typed: ktsetup help "not one" ""
  typed: ktsetup assign -d 3
  typed: ktsetup set -o pd -i 1 --status offline --waiveconfirmation
  $ foretold --until idle -- ktsetup set -o hba --autorebuild on
  = 0
  Nothing would change.

What was a risk before is not the commands' doing; one that nothing ends says so. Programs are told the same.

  $ lab default; foretold -- ktsetup 1 set -o pd -i 0 --status offline --waiveconfirmation
  = 0
  What would be lost:
    virtual disk 0 "system" on adapter 1 is degraded now (was online)
    disk 0 (port 0, Gannet GT1000G, serial AG01000000101) on adapter 1 is offline now (was healthy)
  All that goes on then has ended after 1 h 8 min at the present rates.
  One more loss of disk 1 takes virtual disk 0 "system" on adapter 1 offline; nothing that goes on changes that.
  $ printf 'ktsetup delete -o vd -i 1 --waiveconfirmation\nktsetup set -o pd -i 0 --status offline --waiveconfirmation\n' > script
  $ printf 'ktsetup assign -Z\nktcfg ver\n' >> script
  $ ktsim rehearse --json --script script > told; echo "= $?"; python3 -c 'import json; told = json.load(open("told"))
  > print([command["status"] for command in told["commands"]], [told["commands"][2][word] for word in ("words", "output")])
  > print([one["text"].split(" on ")[0] for one in told["changes"] if "loss" in one], told["idleAfter"], len(told["before"]["adapters"]))
  > print(told["risks"])'
  = 1
  [0, 0, 1] [['ktsetup', 'assign', '-Z'], "assign: invalid option -- 'Z'\nSG driver version 3.5.36.\n"]
  ['virtual disk 1 "scratch"', 'virtual disk 2 "orders"', 'disk 0 (slot 0 of enclosure 1, Fulmar FX2000G-SAS, serial SG00000000000)'] 13108 2
  [{'adapter': 0, 'virtualDisk': 2, 'disks': [1, 2], 'seconds': 13108, 'text': 'For 3 h 38 min one more loss of disks 1, 2 takes virtual disk 2 "orders" on adapter 0 offline.'}]

A saved report does for the adapters; the twin can be kept, with the time that has passed on it.

  $ ktreport json > saved.json; foretold --from saved.json --keep kept.db --at "2026-01-05 09:00:00" --until 1h30m -- ktsetup assign -d 11
  = 0
  What would change:
    disk 11 (port 6, Petrel PS480G SSD, serial AP0000011CC5D) on adapter 0 is a global spare now
    virtual disk 1 "media" on adapter 1 is online now (was degraded)
    virtual disk 1 "media" on adapter 1: rebuild has ended
  All that goes on then has ended after 1 h 8 min at the present rates.
  $ stat -c %a kept.db; ktsim --state kept.db clock show; ktsim --state kept.db status | grep 'PD 11'
  600
  2026-01-05 10:30:00 UTC, stopped
    PD 11    Petrel PS480G SSD     SATA SSD 447.1 GiB  port 6      global spare
  $ no() { local said; said=$(ktsim rehearse "$@" < lines 2>&1); echo "$? ${said##*$'\n'}"; }
  $ echo reboot > lines; no --keep kept.db -- ktsetup ver; no -- rm -r; no; no --script - -- ktsetup ver; no --script -
  125 ktsim: kept.db: is there already
  2 ktsim: "rm" cannot be rehearsed, only ktsetup and ktcfg can
  2 ktsim: a command after --, or --script FILE, is what is rehearsed (--help tells more)
  2 ktsim: a command after --, or --script FILE, is what is rehearsed (--help tells more)
  2 ktsim: standard input, line 1: should begin with ktsetup or ktcfg
  $ for line in 'ktsetup ver\nktsetup "no end\n' '' 'ktsetup \0'; do printf "$line" > lines; no --script lines; done
  2 ktsim: lines, line 2: a quoted text has no end
  2 ktsim: lines: there is no command in it
  2 ktsim: lines, line 1: is no text
  $ no --script - --from -; no --until soon -- ktsetup ver; no --from /dev/null -- ktsetup ver; no --json ktsetup
  2 ktsim: only one of --from and --script can come from standard input
  2 ktsim: --until: should be idle, or a duration such as 90m, 2h30m or 3d
  125 ktsim: /dev/null: is no whole report
  2 ktsim: a shell and --json do not go together
  $ lab none; no -- ktsetup ver; sed '0,/"freeSize": *[1-9][0-9]*/s//"freeSize": 1024/' saved.json > odd.json; no --from odd.json -- ktsetup ver
  125 ktsim: there is no adapter
  125 ktsim: no twin of odd.json: adapters[0].disks[0].freeSize: is 1024, with which the rest does not go (900820197376 would)
  $ sed '/"made"/d' saved.json > undated.json; no --from undated.json -- ktsetup ver
  0 Nothing would change.
  $ for more in "" ', "unread": 3'; do echo "{\"report\": 1$more}" > more.json; no --from saved.json --from more.json -- ktsetup ver; done
  0 Nothing would change.
  0 Nothing would change.
