Enclosures and what stands in them.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt enc -o enc | joined
  Enclosure ID: 1 | Adapter ID: 0 | Status: OK | Logical ID: 0x500A1F40003E0001 | Vendor ID: TARNWARE | Product ID: Shelf 24         | Revision Level: 0103
  $ kt enc -o elecfg -t tpr -e 2 | joined
  Enclosure ID: 1 | Element ID: 2 | Element type: Temperature Sensor | Number of elements: 3 | Sub-enclosure ID: 0 | Text: Temp 02 |
  $ kt enc -o ele -i 1 -t arydev -e 2 | sed '/Disabled/,/Do not/d' | joined
  Enclosure ID: 1 | Element ID: 2 | Element type: Array Device | Status: OK | Predicted failure: no |
