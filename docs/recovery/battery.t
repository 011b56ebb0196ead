An answer of the page on recovery, tried; what stands behind the heading is in the page.

  $ . "$TESTDIR/setup.sh"
  $ cat > lab.json << EOF
  > {"adapters": [{"type": "array-based", "battery": true,
  >   "disks": [{"count": 4, "type": "SAS", "size": "1TB"}],
  >   "arrays": [{"name": "databases", "level": "RAID5", "disks": [0, 1, 2],
  >     "virtualDisks": [{"name": "orders", "cache": "auto", "size": "100GiB"}, {"name": "scratch", "cache": "on"}]}]}]}
  > EOF
  $ lab lab.json

## The battery no longer keeps the cache

  $ ktsim battery charge 8
  $ kt event | grep 'Description.*Battery' | head -2
  Description:  Battery status is abnormal, VDs with auto-cache are now in write through mode
  Description:  Battery capacity is below threshold
  $ kt info -o bbu | grep -e temperature: -e voltage: -e remaining
  current temperature: 31.40 C
  current voltage: 3.60 V
  battery power remaining: 8%

Virtual disks with the cache mode "Auto" write through until the battery is back: slower, and safe. Those with "On" keep
writing into a cache that a power failure now empties.

  $ kt get -o vd
  virtual disk id:         0
  cache mode:              Auto
  virtual disk id:         1
  cache mode:              On

Wait whether it charges, which may take hours. When it stays low, or is old, replace it.

  $ ktsim battery remove --force
  $ kt info -o bbu
  No BBU is found.
  $ ktsim battery insert
  $ ktsim clock advance 8h
  $ kt info -o bbu | grep remaining
  battery power remaining: 99%
  $ kt event | grep 'Description.*normal'
  Description:  Battery status back to normal, VDs with auto-cache are now in write back mode
  Description:  Battery status is abnormal, VDs with auto-cache are now in write through mode
