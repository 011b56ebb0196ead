"""Names the fields of the record that the last traced call was handed: record.py CALL < trace

Prints a line per field that is not zero. The layouts stand here a second time on purpose: a record that moves in the
header must show."""
import struct
import sys

TEXT, IDS = "text", "ids"
CREATE_LD = [("RaidMode", 0, "B"), ("HDCount", 1, "B"), ("RoundingScheme", 2, "B"), ("SubLDCount", 3, "B"),
             ("StripeBlockSize", 4, "H"), ("NumParityDisk", 6, "B"), ("CachePolicy", 7, "B"),
             ("InitializationOption", 8, "B"), ("SectorCoefficient", 9, "B"), ("LDID", 10, "H"),
             ("SpecifiedBlkSeq", 12, "B"), ("TandemWaterMark", 13, "B"), ("Reserved2", 14, "B"),
             ("ReservedForApp", 15, "B"), ("HDIDs", 16, IDS), ("Name", 272, TEXT), ("Size", 288, "Q")]
ARRAY = [("DGID", 0, "H"), ("Reserved1", 2, "H"), ("Name", 4, TEXT), ("RaidMode", 20, "B"), ("SubVDCount", 21, "B"),
         ("NumParityDisk", 22, "B"), ("StripeBlockSize", 30, "H"), ("Size", 32, "Q"), ("BlockSize", 40, "I"),
         ("InitializationOption", 44, "B"), ("Reserved3", 45, "H"), ("PDCount", 47, "B"), ("PDIDs", 48, IDS)]
VD = [("VDID", 0, "H"), ("DGID", 2, "H"), ("Name", 4, TEXT), ("RaidMode", 20, "B"), ("SubVDCount", 21, "B"),
      ("NumParityDisk", 22, "B"), ("DGSlotNum", 23, "B"), ("StripeBlockSize", 30, "H"), ("Size", 32, "Q"),
      ("RoundingScheme", 40, "B"), ("CachePolicy", 41, "B"), ("InitializationOption", 42, "B"),
      ("SectorCoefficient", 43, "B"), ("BlockSize", 44, "I")]
# Call: size of its record, fields, where the number of ids stands.
CALLS = {"KT_LD_Create": (296, CREATE_LD, 1), "KT_LD_GetMaxSize": (296, CREATE_LD, 1),
         "KT_LD_StartMigration": (296, CREATE_LD, 1), "KT_LD_GetMigratedLdSize": (296, CREATE_LD, 1),
         "KT_CreateOrModify_DG": (432, ARRAY, 47), "KT_DG_StartMigration": (432, ARRAY, 47),
         "KT_CreateOrModify_VD": (304, VD, None)}


def value(record, offset, kind, count):
    if kind == TEXT:
        return repr(record[offset:offset + 16].rstrip(b"\0").decode("latin-1"))
    if kind == IDS:
        return " ".join(str(id) for id in struct.unpack_from(f"<{count}H", record, offset))
    return str(struct.unpack_from("<" + kind, record, offset)[0])


def main():
    size, fields, counted = CALLS[sys.argv[1]]
    line = [line for line in sys.stdin if line.startswith(sys.argv[1] + " ")][-1]
    record = bytes.fromhex(line.split(" -> ")[0].split("param=")[1].split()[0])
    assert len(record) == size, f"{len(record)} bytes"
    covered = bytearray(record)
    for name, offset, kind in fields:
        count = record[counted] if kind == IDS else 0
        length = {TEXT: 16, IDS: 2 * count}.get(kind) or struct.calcsize(kind)
        if any(record[offset:offset + length]):
            print(name, value(record, offset, kind, count))
        covered[offset:offset + length] = bytes(length)
    assert not any(covered), "bytes outside the fields are not zero"


main()
