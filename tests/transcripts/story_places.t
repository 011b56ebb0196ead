Disks and the places they are in.

  $ . "$TESTDIR/setup.sh"
  $ places() { ktsim status --all -a "$1" | sed -n 's/^  \(PD [0-9]*\)  .*  \(bay\|port\|PM\|expander\) \([0-9:]*\)  .*/\1 \2 \3/p' |
  >            tail -n "${2-99}" | paste -sd, | sed 's/,/, /g'; }

Without a free bay or port there is no disk more.

  $ lab default && cp state.db old.db; ktsim create --lab empty --force; ktsim disk insert 4 5 --from old.db -a 1
  ktsim: the adapter has no free bay or port, or no number, for all that
  [1]
  $ ktsim disk pull 1 2 -a 1 -f; ktsim disk insert 4 5 --from old.db -a 1 > /dev/null; places 1
  PD 4 port 1, PD 5 port 2, PD 0 port 0, PD 3 port 3, PD 1 port 1, PD 2 port 2
  $ ktsim disk insert 1 -a 1; ktsim disk replace 2 -a 1; ktsim disk pull 4 -a 1 -f; ktsim disk insert 2 -a 1; places 1; ktsim check
  ktsim: the adapter has no free bay or port, or no number, for all that
  ktsim: the adapter has no free bay or port, or no number, for all that
  PD 5 port 2, PD 4 port 1, PD 0 port 0, PD 2 port 1, PD 3 port 3, PD 1 port 1
  The state is sound.

Bays come first, then ports, then those of port multipliers; what was pulled is taken last.

  $ cat > two.json <<XX
  > {"adapters": [{"enclosures": [{"id": 3, "slots": 4}], "expanders": [{}],
  >   "disks": [{"count": 3, "on": "expander", "enclosure": 3}]},
  >  {"type": "LD-based", "portMultipliers": [{}], "disks": [{"count": 2}]}]}
  > XX
  $ ktsim create --lab two.json --force; ktsim disk pull 1 -f; ktsim disk insert 11 12 --from old.db > /dev/null; places 0 3
  PD 3 bay 3:3, PD 4 port 4, PD 1 bay 3:1
  $ kt info -o pd -i 3 | grep Linked
  Linked at:           Expander 0, port 3
  $ ktsim disk insert 3 4 5 6 --from old.db -a 1 > /dev/null; places 1
  PD 2 port 2, PD 3 PM 0:0, PD 4 PM 0:1, PD 5 PM 0:2, PD 0 port 0, PD 1 port 1

A lab that lists more disks than ports gets what they can hang on.

  $ echo '{"adapters": [{"disks": [{"count": 12, "type": "SATA"}]}, {"type": "LD-based", "disks": [{"count": 4}]}]}' > L.json
  $ ktsim create --lab L.json --force --at '2026-01-05 08:00:00'; places 0 6; kt info -o exp -i 0 | grep -e PHY -e Links
  PD 6 port 6, PD 7 expander 0:0, PD 8 expander 0:1, PD 9 expander 0:2, PD 10 expander 0:3, PD 11 expander 0:4
  Total # of PHYs:     28
  Links to:            HBA 0, port [7] on SAS address 500A1F4000100007
  $ ktsim cable pull 7 -f; ktsim disk insert 8; ktsim check
  ktsim: the adapter has no free bay or port, or no number, for all that
  The state is sound.
  $ ktsim cable insert 7; places 0 | grep -o expander | wc -l; ktsim check
  5
  The state is sound.
