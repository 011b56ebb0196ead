Media patrol on disks that are in use or kept as spares, and activities that take a disk from it.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ steering() { calls | grep -e Start -e Control | cut -d ' ' -f 1,3-; }
  $ patrol() { kt info -o pd -i $1 | grep 'Media patrol'; }
  $ kt mp -d 9
  Start media patrol successfully
  $ ktsim clock advance 30m
  $ patrol 9
  Media patrol:        running, 7% done
  $ kt mp -d 9
  
  PD 9 is currently having background activity.
  $ kt mp -a restart -d 9
  
  Medai patrol is in progress on PD 9.
  $ kt mp -a pause -d 9
  Pause successfully
  $ kt mp -a stop -d 9
  
  Media patrol on PD 9 is currently paused
  $ patrol 9
  Media patrol:        paused at 7%
  $ kt mp -a resume -d 9
  Resume successfully
  $ kt mp -a stop -d 9
  Abort successfully
  $ kt mp -a resume -d 9
  
  Media patrol on PD 9 is aborted and need to restart.
  $ kt mp -a restart -d 9
  Restart successfully
  $ steering
  KT_PD_StartMediaPatrol pd=9 -> 0
  KT_PD_BGAControl pd=9 control=2 -> 0
  KT_PD_BGAControl pd=9 control=3 -> 0
  KT_PD_BGAControl pd=9 control=4 -> 0
  KT_PD_BGAControl pd=9 control=1 -> 0
  $ ktsim clock until idle
  Idle after 6 h 37 min.
  $ kt mp -a stop -d 9
  
  PD 9 is not in media patrol state.
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
  $ steering
  KT_PD_StartMediaPatrol pd=0 -> 0
  $ (echo; echo y) | kt init -l 2
  Init VD will stop Media patrol on PD. Do you want to continue?(y or n)
  Please input y or n.
  Start initialization successfully
  $ steering
  KT_LD_StartINIT vd=2 initType=2 -> 0
  $ kt info -o vd -i 2 | grep 'BGA progress'
  BGA progress:    initializing is 0% done
  $ patrol 0
  Media patrol:        auto-paused

Other disks are not patrolled.

  $ kt mp -d 11
  
  PD 11 is not a spare or assigned disk.
  [1]
  $ kt mp -d 40
  
  Unable to get status of PD 40.
  [9]
  $ ktsim fault KT_PD_GetBGAStatus 1
  $ kt mp -a stop -d 0
  
  Unable to get status of PD 0.
  [1]
