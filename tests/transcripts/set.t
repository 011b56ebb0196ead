Changing settings.

  $ . "$TESTDIR/setup.sh"
  $ lab default

What is asked for changes; what is so already is not written, and what a battery does already is not done again.

  $ for words in "-n tapes" "-c ON -p ra --waiveconfirmation" "-w wt" "-c auto" "-p none" "-p none -c auto -n tapes"; do
  >   kt set -o LD --id 3 $words | sed -n '2,3p' | joined; done
  cache mode:              Off  | read policy:             none
  cache mode:              On | read policy:             ra
  cache mode:              Off  | read policy:             ra
  cache mode:              Auto | read policy:             ra
  cache mode:              Auto | read policy:             none
  
  $ kt set -o pd -i 3 -c off --smart off --speed 3
  hard disk id:            3
  write cache:             off
  drive speed:             3 Gb/s
  SMART:                   off
  status:                  online
  $ kt set -o hba --mute --alarm off > /dev/null; kt set -o hba --mute | tail -1
  Alarm:                   off
  $ for power in charge charge stop stop; do kt set -o bbu --power $power | joined; done
  BBU status:              charging | BBU charge:              95 %
  nothing to change
  BBU status:              idle | BBU charge:              95 %
  nothing to change
  $ calls | grep -c -e _SetConfig -e Mute -e Change
  11

What can lose data is asked about: a cache that no battery keeps, a battery that caches need, a member. The end of input
declines.

  $ ask() { kt "$@" < /dev/null | grep -v '^Do you still want to change the settings? (y or n)$'; }
  $ kt set -o vd -i 0 -w wt > /dev/null; kt set -o vd -i 0 -w wb | sed -n 2p
  cache mode:              On
  $ ask set -o bbu --power discharge
  VD 0 (boot) goes on writing to its cache without a battery.
  VD 1 (scratch) goes on writing to its cache without a battery.
  $ echo y | kt set -o bbu --power discharge | tail -3
  Do you still want to change the settings? (y or n)
  BBU status:              discharging
  BBU charge:              95 %
  $ ask set -o vd -i 3 -c on
  No battery keeps what VD 3 has in its write cache: it will be lost when the power fails.
  $ kt set -o array -i 1 -c off > /dev/null; ask set -o array -i 1 -c on
  No battery keeps the write cache of the disks of array 1: what it holds will be lost when the power fails.
  $ echo maybe | kt set -o pd -i 3 -c on
  No battery keeps the write cache of PD 3: what it holds will be lost when the power fails.
  Do you still want to change the settings? (y or n)
  Please input y or n.
  $ for pd in 7 3; do ask set -o pd -i $pd --status offline; done
  PD 7 is a member.
  VD 0 (boot) loses its redundancy.
  VD 1 (scratch) loses its redundancy.
  PD 3 is a member.
  VD 3 (tapes) loses part of its redundancy.
  $ echo y | kt set -o pd -i 3 --status offline | tail -1; ask set -o pd -i 4 --status offline
  status:                  offline
  PD 4 is a member.
  VD 3 (tapes) loses its redundancy.
  $ for word in offline "online -c on --waiveconfirmation" online; do kt set -o pd -i 3 --status $word | tail -1; done
  nothing to change
  status:                  online
  nothing to change
  $ ktsim clock until idle > /dev/null; for pd in 8 3; do ask 1 set -o pd -i $pd --status offline; done | joined
  PD 8 is a member. | VD 2 (spool) goes offline. | PD 3 is a member. | VD 1 (media) loses its redundancy.
