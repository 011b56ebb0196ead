Port multipliers, expanders and the battery.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt 1 info -o pm | sed 4,12d
  
  Port Multiplexer Information
  -------------------------
  Adapter:             1
  PM ID:               1
  # of ports:          5
  Links to:            HBA port 2
  Vendor ID:           8100
  Device ID:           14085
  Product revision:    1
  PM spec revision:    1.2
  
  Total # of PM:       2
  
  $ kt 0 info -o pm
  PM is not supported on adapter 0.
  [19]
  $ kt 1 info -o pm -i 7
  
  Unable to get info of PM 7 (error 11: Invalid port multiplexer id)
  [11]
  $ kt info -o exp -i 0
  
  Expander Information
  -------------------------
  Adapter:             0
  Expander ID:         0
  Enclosure ID:        1
  Total # of PHYs:     28
  Links to:            HBA 0, port [0, 1, 2, 3] on SAS address 500A1F4000100000
  From parent:         port [24, 25, 26, 27] on SAS addr 500A1F4000280000
  Vendor ID:           TARNWARE
  Product ID:          Fanout 28       
  Product revision:    1.07
  Component vendor ID: TARNWARE
  Route table is not self configurable.
  
  $ kt 1 info -o exp
  Expander is not supported on adapter 1.
  [19]
  $ kt info -o exp -i 7
  
  Unable to get info of expander 7 (error 10: Invalid expander id)
  [10]
  $ ktsim fault KT_PD_GetPMInfo 4
  $ ktsim fault KT_PD_GetExpanderInfo 1
  $ kt 1 info -o pm
  
  Unable to get info of PM (error 4: Resource not available)
  [4]
  $ kt info -o exp
  
  Unable to get info of expander (error 1: Failed)
  [1]
  $ lab troubled
  $ kt info -o exp | tail -4
  Configuring route table...
  
  Total # of expander: 1
  

  $ lab empty
  $ kt info -o exp
  No expander is found.

The battery: charging, discharging on a troubled adapter, none, and one that lies.

  $ lab default
  $ kt info -o bbu
  status: Unknowrecharge cycle 17
  feature supported (supported sensor): temperature voltage Ecapacity
  current temperature: 31.40 C
  temperature range: 0 - 60 degrees centigrade
  current voltage: 4.12 V
  voltage range: 3300mV - 4300mV
  current capacity: 6.20 watt-hours
  max capacity: 6.50 watt-hours
  battery power remaining: 95%
  $ kt info -o bbu -i 0 > /dev/null
  $ kt info -o bbu -i 1
  
  Unable to get info of BBU 1 (error 16: Invalid BBU id)
  [16]
  $ ktsim fault KT_BBU_GetInfo 16
  $ kt info -o bbu
  Unable to get info of BBU. (error 16: Invalid BBU id).
  [16]
  $ lab troubled
  $ kt info -o bbu | grep -e status -e current -e remaining
  status: discharging and 16 minutes to empty,recharge cycle 17
  current temperature: 58.20 C
  current voltage: 3.29 V
  current capacity: 0.59 watt-hours
  battery power remaining: 9%
  $ kt 1 info -o bbu
  Unable to get info of BBU. (error 160: This command is not supported on this adapter).
  [160]
  $ lab hostile
  $ kt info -o bbu | grep -e status -e temperature -e voltage
  status: discharging and 180 minutes to empty,recharge cycle 17
  feature supported (supported sensor): temperature voltage Ecapacity
  current temperature: -273.15 C
  temperature range: -32768 - 32767 degrees centigrade
  current voltage: 64.61 V
  voltage range: 3300mV - 4300mV
