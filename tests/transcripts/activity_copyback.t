Copy back on an array, and the questions that protect media patrol on its disks.

  $ . "$TESTDIR/setup.sh"
  $ cat > lab.json << EOF
  > {"name": "copying", "adapters": [{"type": "array-based",
  >   "disks": [{"count": 4, "type": "SAS", "size": "1TB", "on": "HBA", "port": 0}],
  >   "arrays": [{"name": "mirror", "level": "RAID1", "disks": [0, 1], "virtualDisks": [{"name": "data",
  >                "activity": {"kind": "copy back", "percent": 40, "disk": 1}}]}]}]}
  > EOF
  $ lab lab.json
  $ progress() { kt info -o vd -i $1 | grep 'BGA progress'; }
  $ steering() { calls | grep -e Start -e Control | cut -d ' ' -f 1,3-; }
  $ progress 0
  BGA progress:    copy back is 40% done
  $ kt copyback -l 0
  
  Array 0 is currently doing copy back.
  $ kt copyback -a stop -l 0
  
  Array 0 is currently doing copy back.
  $ kt copyback -a resume -l 0
  
  Array 0 is currently doing copy back.
  $ kt copyback -a pause -l 0
  Pause successfully
  $ ktsim clock advance 1d
  $ progress 0
  BGA progress:    copy back is paused at 40%
  $ kt copyback -a pause -l 0
  
  array 0 copy back is currently paused
  $ kt rebuild -l 0 -d 2
  
  Array 0 is having background activity.
  $ kt copyback -a resume -l 0
  Resume successfully
  $ ktsim fault KT_DG_BGAControl 63
  $ kt copyback -a pause -l 0
  
  Unable to pause copyback on array 0 (error 63: BGA is running)
  [63]
  $ kt copyback -a pause -l 1
  Unable to get info of array 1 (error 17: Invalid array id).
  [17]
  $ steering
  KT_DG_BGAControl dg=0 control=2 -> 0
  KT_DG_BGAControl dg=0 control=3 -> 0
  KT_DG_BGAControl dg=0 control=2 -> 63

While media patrol runs on a member disk, a start asks first; the question takes y or n, and the end of input declines.

  $ lab troubled
  $ kt info -o pd -i 13 | grep 'Media patrol'
  Media patrol:        running, 61% done
  $ kt cc -l 6 < /dev/null
  Fix VD will stop Media patrol on PD. Do you want to continue?(y or n)
  $ echo N | kt init -l 6
  Init VD will stop Media patrol on PD. Do you want to continue?(y or n)
  $ kt cc -a stop -l 6
  
  VD 6 is not in consistency check mode.
  $ steering
  $ printf '\nmaybe\nyes\nrest\n' | kt cc -t check -l 6
  Check VD will stop Media patrol on PD. Do you want to continue?(y or n)
  Please input y or n.
  Please input y or n.
  Start consistency check
  $ steering
  KT_LD_StartConsistencyCheck vd=6 fix=0 -> 0
