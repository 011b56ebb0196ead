Background activities on the simulated adapters: what is started, how it is steered, and what its end brings.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ progress() { kt $1 info -o $2 | grep -e 'BGA progress' -e 'Media patrol' -e 'PD RAID.*\*'; }
  $ told() { kt $1 event | sed -n 's/^Description:  //p' | grep -v ' is [257][05]% done' | head -$2 | tac; }

Initialization and check of a virtual disk, from the start to the event of the end.

  $ kt 1 delete -o vd -i 1 -f --waiveconfirmation > /dev/null
  $ kt 1 init -l 0 && ktsim clock advance 10m
  Start initialization successfully
  $ for action in pause resume stop; do (kt 1 init -a $action -l 0; progress 1 vd) | joined; done
  Pause successfully | BGA progress:    initializing is paused at 23%
  Resume successfully | BGA progress:    initializing is 23% done
  Abort successfully | BGA progress:    initializing is aborted
  $ kt 1 init -a restart -l 0 && ktsim clock until idle
  Resume successfully
  Idle after 42 min 40 s.
  $ kt 1 cc -t check -l 0 && ktsim clock until idle
  Start consistency check
  Idle after 42 min 40 s.
  $ told 1 8 | paste -d'|' - -
  Background initialization on virtual disk 0 started|Background initialization on virtual disk 0 paused
  Background initialization on virtual disk 0 resumed|Background initialization on virtual disk 0 aborted
  Background initialization on virtual disk 0 restarted|Background initialization on virtual disk 0 completed
  Consistency check on Virtual Disk 0 started|Consistency check on Virtual Disk 0 completed

Everything pauses at once; virtual disks on the same disks take turns, and disks are patrolled only when left alone.

  $ kt mp -d 0 > /dev/null
  $ (echo; echo y) | kt 0 init -l 2
  Init VD will stop Media patrol on PD. Do you want to continue?(y or n)
  Please input y or n.
  Start initialization successfully
  $ for words in "cc -l 3" "pause -c 0" "init -a resume -l 2" "cc -l 0" "init -l 1"; do kt $words > /dev/null || echo $?; done
  $ progress 0 vd | cut -c 18- | joined; progress 0 pd
  synchronizing is auto paused at 0% | initializing is 0% done | initializing is 0% done | synchronizing is paused at 0%
  Media patrol:        paused at 0%

A spare is patrolled by the hour.

  $ lab default
  $ kt mp -d 9 > /dev/null && ktsim clock advance 30m
  $ for action in stop restart; do (kt mp -a $action -d 9; progress 0 "pd -i 9") | joined; done
  Abort successfully | Media patrol:        aborted
  Restart successfully | Media patrol:        running, 0% done
  $ ktsim clock until idle
  Idle after 6 h 37 min.

