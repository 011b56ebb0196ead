Media patrol on disks that are in use or kept as spares, and activities that take a disk from it.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ patrol() { kt info -o pd -i $1 | grep 'Media patrol'; }
  $ kt mp -d 9
  Start media patrol successfully
  $ ktsim clock advance 30m
  $ patrol 9
  Media patrol:        running, 7% done
  $ kt mp -a pause -d 9
  Pause successfully
  $ patrol 9
  Media patrol:        paused at 7%
  $ kt mp -a resume -d 9
  Resume successfully
  $ kt mp -a stop -d 9
  Abort successfully
  $ kt mp -a restart -d 9
  Restart successfully
  $ ktsim clock until idle
  Idle after 6 h 37 min.
  $ kt event | sed -n 's/^Description:  //p' | grep -v '%'
  Media Patrol on physical disk 9 completed
  Media Patrol on physical disk 9 restarted
  Media Patrol on physical disk 9 aborted
  Media Patrol on physical disk 9 resumed
  Media Patrol on physical disk 9 paused
  Media Patrol on physical disk 9 started
  Adapter 0 with serial number KS260100004711 is detected

A member disk: what starts on its virtual disk asks first.

  $ calls > /dev/null
  $ kt mp -d 0
  Start media patrol successfully
  $ echo n | kt init -l 2
  Init VD will stop Media patrol on PD. Do you want to continue?(y or n)
  $ (echo; echo y) | kt init -l 2
  Init VD will stop Media patrol on PD. Do you want to continue?(y or n)
  Please input y or n.
  Start initialization successfully
  $ calls | grep Start | cut -d ' ' -f 1,3-
  KT_PD_StartMediaPatrol pd=0 -> 0
  KT_LD_StartINIT vd=2 initType=2 -> 0
  $ patrol 0
  Media patrol:        auto-paused
  $ kt mp -d 11
  
  PD 11 is not a spare or assigned disk.
  [1]

Copy back is steered, never started.

  $ ktsim create --force --at "2026-01-05 08:00:00" --lab - << 'EOF' > /dev/null
  > {"adapters": [{"type": "array-based", "disks": [{"count": 3, "type": "SAS", "size": "1TB"}],
  >   "arrays": [{"level": "RAID1", "disks": [0, 1], "virtualDisks": [
  >     {"activity": {"kind": "copy back", "percent": 40, "disk": 1}}]}]}]}
  > EOF
  $ kt copyback -l 0
  
  Array 0 is currently doing copy back.
  $ kt copyback -a pause -l 0
  Pause successfully
  $ ktsim clock advance 1d
  $ kt info -o vd | grep 'BGA progress'
  BGA progress:    copy back is paused at 40%
  $ kt rebuild -l 0 -d 2
  
  Array 0 is having background activity.
  $ kt copyback -a resume -l 0
  Resume successfully
