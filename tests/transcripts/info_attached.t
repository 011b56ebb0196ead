Port multipliers, expanders, enclosures and the battery.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt 1 info -o pm | sed '4,12d; 15,17d'
  
  Port Multiplexer Information
  -------------------------
  Adapter:             1
  PM ID:               1
  Device ID:           14085
  Product revision:    1
  PM spec revision:    1.2
  
  Total # of PM:       2
  
  $ kt info -o exp -i 0 | sed '9,12d'
  
  Expander Information
  -------------------------
  Adapter:             0
  Expander ID:         0
  Enclosure ID:        1
  Total # of PHYs:     28
  Links to:            HBA 0, port [0, 1, 2, 3] on SAS address 500A1F4000100000
  Component vendor ID: TARNWARE
  Route table is not self configurable.
  
  $ kt enc -o enc | joined
  Enclosure ID: 1 | Adapter ID: 0 | Status: OK | Logical ID: 0x500A1F40003E0001 | Vendor ID: TARNWARE | Product ID: Shelf 24         | Revision Level: 0103
  $ kt enc -o elecfg -t tpr -e 2 | joined
  Enclosure ID: 1 | Element ID: 2 | Element type: Temperature Sensor | Number of elements: 3 | Sub-enclosure ID: 0 | Text: Temp 02 |
  $ kt enc -o ele -i 1 -t arydev -e 2 | sed '/Disabled/,/Do not/d' | joined
  Enclosure ID: 1 | Element ID: 2 | Element type: Array Device | Status: OK | Predicted failure: no |
  $ lab troubled
  $ kt info -o exp | tail -4 | head -3
  Configuring route table...
  
  Total # of expander: 1

The battery, and none.

  $ lab default
  $ kt info -o bbu | head -2
  status: Unknowrecharge cycle 17
  feature supported (supported sensor): temperature voltage Ecapacity
  $ kt 1 info -o bbu
  Unable to get info of BBU. (error 160: This command is not supported on this adapter).
  [160]
