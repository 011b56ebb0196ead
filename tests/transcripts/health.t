The health of disks: SMART thresholds, return status and attributes.

  $ . "$TESTDIR/setup.sh"
  $ lab default
  $ kt status -o pd -i 3; kt status -o hd | grep -c false
  hard disk id:              3
  SMART threshold exceeded:  false
  13
  $ kt smart -p 3 > smart; sed 7q smart; sed 1,7d smart | tr -s '\t ' ' ' | paste -d'|' - - -
  SMART STATUS RETURN: OK.
  
  Smart Info
  ID\tAttribute Name\t\tCurrent\tWorst\tThreshhold\tRawValue\tStatus (esc)
  01\tRaw_Read_Error_Rate \t100\t100\t6       \t000000000000\tOK (esc)
  03\tSpin_Up_Time        \t97\t97\t0       \t000000000000\tOK (esc)
  04\tStart_Stop_Count    \t100\t100\t20      \t000000000029\tOK (esc)
  05 Reallocated_Sectors 100 100 36 000000000000 OK|07 Seek_Error_Rate 87 87 30 000000000000 OK|09 Power_On_Hours 86 86 0 000000003740 OK
  0A Spin_Retry_Count 100 100 97 000000000000 OK|0C Power_Cycle_Count 100 100 20 000000000029 OK|BB Reported_Uncorrect 100 100 0 000000000000 OK
  BE Airflow_Temperature 70 64 45 00000000001E OK|C2 Temperature_Celsius 70 64 0 00000000001E OK|C5 Pending_Sectors 100 100 0 000000000000 OK
  C6 Offline_Uncorrect 100 100 0 000000000000 OK|C7 UDMA_CRC_Error_Count 200 200 0 000000000000 OK|
  $ kt smart -p 0; lab troubled; kt status -o pd | grep -B1 true
  SAS PD 0 has not SMART information
  hard disk id:              12
  SMART threshold exceeded:  true
  $ kt 1 smart -p 8 | grep -e STATUS -e now
  SMART STATUS RETURN: NotOK.
  05\tReallocated_Sectors \t36\t36\t36      \t000000000200\tFailing now (esc)

The status of disks comes 128 records at a time, or as many as the adapter's buffer holds.

  $ ktsim create --force --lab - > /dev/null << 'END'
  > {"adapters": [{"type": "array-based", "MaxHD_Ext": 300, "disks": [{"count": 300}]},
  >               {"type": "array-based", "MaxBufferSize": 1, "MaxHD_Ext": 300, "disks": [{"count": 300}]},
  >               {"type": "array-based"}]}
  > END
  $ calls > /dev/null; ktreport json > /dev/null; calls | grep -c KT_PD_GetSmartStatus
  5
  $ for a in 0 1 2; do kt $a status -o pd > /dev/null; done
  $ calls | grep -o 'KT_PD_GetSmartStatus.*' | cut -c 22-42 | sed 's/request=//' | joined
  a=0 000100008 | a=0 000180008 | a=0 000100018 | a=1 000100007 | a=1 00017e007 | a=1 0001fc007 | a=2 000100008
