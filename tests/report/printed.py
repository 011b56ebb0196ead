"""What ktsetup prints of an adapter, told from the report alone: a label and its value for every line."""
import time

LEVELS = {"RAID0": "RAID0", "JBOD": "JBOD", "TANDEM CAPACITY": "tandemix capacity", "TANDEM SAFE": "tandemix safe",
          "HYBRID": "tandemix hybrid"}
ACTIVITIES = {"rebuild": "rebuilding", "quick init": "initializing", "foreground init": "initializing",
              "background init": "initializing", "check": "synchronizing", "check and fix": "synchronizing",
              "migration": "migration", "copy back": "copy back"}
STATUSES = {"importable": "importable foreign", "not importable": "not importable foreign"}
GIGABITS = {1500000000: "1.5 Gb/s", 3000000000: "3 Gb/s", 6000000000: "6 Gb/s", 12000000000: "12 Gb/s"}
BUS = {2500000000: "2.5Gb/s", 5000000000: "5Gb/s", 8000000000: "8Gb/s"}
TYPES = {"pow": "Power Supply", "fan": "Cooling Device", "tpr": "Temperature Sensor", "dor": "Door Lock",
         "alm": "Audible Alarm", "dpl": "Display", "vlt": "Voltage Sensor", "arydev": "Array Device"}
FAN_SPEEDS = ["stopped", "lowest", "second lowest", "third lowest", "intermediate", "third highest", "second highest",
              "highest"]
OS = {True: "yes", False: "no", None: "unknown"}


def safe(text):
    """A text field as ktsetup prints it."""
    text = text.split("\0")[0]
    return "".join(byte if " " <= byte <= "~" else "?" for byte in text)


def on(flag):
    return "on" if flag else "off"


def mib(size):
    return f"{size >> 20} M"


def adapter(one):
    can = lambda feature: "Supported" if feature in one["features"] else "Not supported"
    able = lambda limit: "Supported" if one["limits"][limit] else "Not supported"
    bus, limits, versions = one["bus"], one["limits"], one["versions"]
    revision = f"{bus['revision']:x}"
    modes = [{"TANDEM CAPACITY": "hc(tandem capacity)", "TANDEM SAFE": "hs(tandem safe)",
              "HYBRID": "hybrid(tandem hybrid)"}.get(level, level) for level in one["levels"]]
    lines = {"Adapter ID:": one["id"], "Product:": f"{bus['vendor']:x}-{bus['device']:x}",
             "Sub vendor ID:": f"{bus['subVendor']:x}", "Sub device ID:": f"{bus['subDevice']:x}",
             "Chip revision:": revision[0].upper() + revision[1:], "slot number:": bus["slot"],
             "Max PCIe speed:": BUS.get(bus.get("maxSpeed"), "Unknown"), "Current PCIe speed:": BUS.get(bus.get("speed"), "Unknown"),
             "Max PCIe link:": f"{bus.get('maxLanes')}X", "Current PCIe link:": f"{bus.get('lanes')}X",
             "Driver version:": versions["driver"], "BIOS version:": versions.get("bios"),
             "Firmware version:": versions.get("firmware"), "Boot loader version:": versions.get("bootLoader"),
             "# of ports:": one["ports"], "# of AES ports:": limits["keyPorts"], "Serial number:": safe(one["serial"]),
             "Model:": safe(one["model"]), "Buzzer:": "Supported" if one["buzzer"] else "Not supported",
             "Supported port type:": " ".join(one["portTypes"]), "Supported RAID mode:": " ".join(modes),
             "Maximum SSD in one Tandemix:": limits["hybridSsds"], "Maximum SSD Segment:": limits["ssdSegments"],
             "Maximum disk in one VD:": limits["disksPerVirtualDisk"], "Maximum parity disk for RAID6:": limits["parity"],
             "PM:": able("portMultipliers"), "Expander:": able("expanders"), "Rebuild:": can("rebuild"),
             "Background init:": can("background init"), "Sync:": can("synchronize"), "Migrate:": can("migration"),
             "Media patrol:": can("media patrol"), "Foreground init:": can("foreground init"), "Copy back:": can("copy back"),
             "Maximum supported disk:": limits["disks"], "Maximum supported VD:": limits["virtualDisks"],
             "Maximum supported array:": limits["arrays"], "Maximum disk in one array:": limits["disksPerArray"],
             "Maximum VD in one array:": limits["virtualDisksPerArray"], "Max total blocks:": limits["blocks"],
             "Features:": ",".join(one["features"]), "Max buffer size:": limits["buffer"] >> 10,
             "Stripe size supported:": " ".join(f"{size}K" for size in one["stripes"])}
    words = one["advancedFeatures"]
    if "phy control by port" in words:  # one bit, two words, and another bit between them
        words = [word for word in words if word != "sata phy ctrl"]
        at = words.index("crypto") + 1 if "crypto" in words else words.index("phy control by port") + 1
        words.insert(at, "sata phy ctrl")
    lines["Advanced features:"] = ",".join(words)
    for port, address in enumerate(one.get("portAddresses", [])):
        lines[f"Port {port} SAS address:"] = address.upper()
    for label, image in (("Image health:", "image"), ("Autoload image health:", "autoload"),
                         ("Boot loader image health:", "boot loader"), ("Firmware image health:", "firmware"),
                         ("Boot ROM image health:", "boot ROM"), ("HBA info image health:", "settings")):
        lines[label] = "Healthy" if one.get("images", {}).get(image) else "Unhealthy"
    return lines


def settings(one):
    config = one["config"]
    switch = lambda word: "not support" if config[word] == 255 else on(config[word])
    return {"HBA Index:": one["id"], "Auto Rebuild:": switch("AutoRebuildOn"),
            "Optimize CPU efficiency:": switch("CpuEfficiencyOn"), "BGA Rate:": f"{config['BGARate']} %",
            "Syncronization Rate:": f"{config['SyncRate']} %", "Initialization Rate:": f"{config['InitRate']} %",
            "Rebuild Rate:": f"{config['RebuildRate']} %", "Migration Rate:": f"{config['MigrationRate']} %",
            "Copyback Rate:": f"{config['CopybackRate']} %", "Media Patrol Rate:": f"{config['MPRate']} %",
            "Poll SMART Status:": switch("PollSMARTStatus"), "Copy Back:": switch("CopyBackOn"),
            "Module Consolidation:": switch("ModuleConsolidation"), "Raw Update:": on(not config["rawimg_update_disabled"]),
            "Model:": safe(config["ModelNumber"])}


def progress(activity):
    percent = activity.get("percent", activity.get("BgaPercentage", activity.get("Percentage")))
    return activity.get("state"), percent


def disk(one):
    place = {"HBA": f"HBA port {one['port']}", "PM": f"PM {one.get('parent')}, port {one['port']}",
             "expander": f"Expander {one.get('parent')}, port {one['port']}",
             "enclosure": f"enclosure {one.get('parent')}, HBA port {one['port']}"}
    bits = one.get("HDType", 0)
    kind = one.get("type") or " ".join(word for bit, word in ((4, "SAS"), (8, "ATAPI"), (16, "SSD")) if bits & bit)
    supports = lambda word: "supported" if word in one["supports"] else "not supported"
    switch = lambda word, flag: f"supported ({on(one[flag])})" if word in one["supports"] else "not supported"
    lines = {"PD ID:": one["id"], "Type:": kind, "Linked at:": place.get(one.get("on")),
             "SAS address:": one.get("address", "0" * 16).upper(),
             "Size:": f"{one['size'] >> 10} K" if "size" in one else "not available",
             "Write cache:": switch("write cache", "writeCache"), "SMART:": switch("SMART", "smart"),
             "NCQ:": "supported (on)" if "NCQ" in one["supports"] else "not supported", "48 bits LBA:": supports("48 bits LBA"),
             "supported speed:": ", ".join(GIGABITS[speed] for speed in one["linkSpeeds"]) or "unknown",
             "Current speed:": GIGABITS.get(one.get("linkSpeed"), "unknown"), "model:": safe(one["model"]),
             "Serial:": safe(one["serial"]), "Firmware version:": safe(one["firmware"]),
             "Locate LED status:": on(one["locateLed"]) if "locateLed" in one else "Not Support",
             "Running OS:": OS[one.get("os")], "SSD Type:": one.get("ssdType"), "PD valid size:": f"{one['validSize'] >> 10} K",
             "Block ids:": " ".join(map(str, one["blocks"]))}
    for label, word in (("Supported PIO:", "pio"), ("Supported MDMA:", "mdma"), ("Supported UDMA:", "udma"),
                        ("Current PIO:", "currentPio"), ("Current MDMA:", "currentMdma"), ("Current UDMA:", "currentUdma")):
        lines[label] = one.get(word)
    if "patrol" in one:
        state, percent = progress(one["patrol"])
        label = "Data scrub:" if one["patrol"].get("kind") == "data scrub" else "Media patrol:"
        lines[label] = {"running": f"running, {percent}% done", "paused": f"paused at {percent}%",
                        "auto paused": "auto-paused"}.get(state, state)
    return lines


def setup(one):
    """members by group, as "PD RAID setup" has them."""
    group = {"RAID10": 2, "RAID50": one["members"] // 2, "RAID60": one["members"] // 2}.get(one.get("level"), one["members"])
    text = []
    for at, member in enumerate(one["disks"]):
        text.append("*" if member is None else str(member))
        if group and (at + 1) % group == 0 and at + 1 < len(one["disks"]):
            text.append("|")
    return " ".join(text)


def virtual_disk(one):
    activity = one.get("activity")
    state, percent = progress(activity) if activity else (None, None)
    status = one.get("status", "unknown")
    level = one.get("level")
    lines = {"id:": one.get("id"), "name:": safe(one.get("name", "")), "array id:": one.get("array", 65535),
             "status:": STATUSES.get(status, status), "Stripe size:": one["stripe"],
             "RAID mode:": LEVELS.get(level, level or "unknown"), "Tandem mode:": LEVELS.get(level, level),
             "Sub VD count:": one.get("parts", 0), "# of parity disks:": one.get("parity", 0),
             "Cache mode:": {"on": "On", "off": "Off"}.get(one.get("cacheInForce"), ""), "size:": mib(one["size"]),
             "RAID6 redundancy:": one.get("parity", 0), "BGA status:": state or "N/A",
             "Block ids:": " ".join(str(block) for block in one["blocks"] if block is not None), "# of PDs:": one["members"],
             "PD RAID setup:": setup(one), "Running OS:": OS[one.get("os")]}
    if "written" in one:
        lines["Last write time:"] = time.asctime(time.strptime(one["written"], "%Y-%m-%dT%H:%M:%SZ"))
    if activity:
        word = ACTIVITIES.get(activity.get("kind"), "unknown bga action")
        how = {"running": f"is {percent}% done", "paused": f"is paused at {percent}%",
               "auto paused": f"is auto paused at {percent}%"}.get(state, f"is {state}")
        lines["BGA progress:"] = f"{word} {how}"
    lines["initializing status:"] = {None: "N/A", "running": f"{percent}% done", "aborted": "aborted",
                                     "interrupted": "interrupted"}.get(state, f"{state} at {percent}%")
    if activity and activity.get("kind") == "rebuild" and state == "running":
        lines["initializing status:"] = f"restore is {percent}% done"
    return lines


def array(one):
    members = [member for member in one["disks"] if member is not None]
    activity = one.get("activity")
    word = ACTIVITIES.get(activity.get("kind"), "unknown bga action") if activity else "none"
    if activity and activity["state"] != "running":
        word += " " + activity["state"]
    status = {"functional": "functional", "disk missing": "At least one PD is missing from this array"}
    lines = {"ID:": one["id"], "Name:": safe(one["name"]), "Stripe size:": one["stripe"], "Block size:": one["sector"],
             "RAID mode:": one.get("level", "unknown"), "Sub VD count:": one.get("parts", 0),
             "# of parity disks:": one.get("parity", 0), "RAID6 redundancy:": one.get("parity", 0),
             "Total space:": mib(one["size"]), "Remaining space:": mib(one["freeSize"]),
             "Member used space:": mib(one["memberSize"]), "Total array slot:": len(one["slots"]), "# of PDs:": len(members),
             "PD IDs:": set(map(str, members)), "# of spare PDs:": len(one["spares"]),
             "Spare PD IDs:": " ".join(map(str, one["spares"])), "BGA status:": word,
             "Status:": status.get(one.get("status"), "offline")}
    for slot in one["slots"]:
        what = f"VD {slot['virtualDisk']}" if "virtualDisk" in slot else "free"
        lines[f"slot {slot['slot']}:"] = f"{what}, {mib(slot['size'])}"
    return lines


def block(one):
    states = ["good", "offline", "rebuilding", "copying back"]
    status = states[one["status"]] if one["status"] < len(states) else f"unknown ({one['status']})"
    return {"Block ID:": one["id"], "PD ID:": one["disk"], "VD ID:": one.get("virtualDisk", "free"), "Status:": status,
            "Sector size:": one["sector"], "Start LBA:": one["start"] // one["sector"],
            "Size:": f"{one['size'] // one['sector']} sectors"}


def spare(one):
    return {"PD ID:": one["id"], "Spare type:": one["spare"], "Array ID:": one.get("array"),
            "In use:": "yes" if one.get("spareInUse") else "no"}


def ports(list_of_ports):
    return "[" + ", ".join(map(str, list_of_ports)) + "]"


def expander(one):
    parent = one["parent"]
    address = parent.get("address", "0" * 16).upper()
    links = {"HBA": f"HBA {parent['id']}, port {ports(parent['ports'])} on SAS address {address}",
             "expander": f"expander {parent['id']}, port {ports(parent['ports'])} on SAS addr {address}"}
    return {"Expander ID:": one["id"], "Enclosure ID:": one.get("enclosure", 65535),
            "Links to:": links.get(parent.get("on"), f"unknown device {parent['id']}"),
            "From parent:": f"port {ports(one['ports'])} on SAS addr {one['address'].upper()}", "Vendor ID:": safe(one["vendor"]),
            "Product ID:": safe(one["product"]), "Product revision:": safe(one["revision"]),
            "Component vendor ID:": safe(one["componentVendor"])}


def multiplier(one):
    parent = one["parent"]
    links = {"HBA": f"HBA port {parent['ports'][0]}", "PM": f"PM {parent['id']}, port {parent['ports'][0]}"}
    return {"PM ID:": one["id"], "# of ports:": one["ports"], "Links to:": links.get(parent.get("on")),
            "Vendor ID:": one["vendor"], "Device ID:": one["device"], "Product revision:": one["revision"],
            "PM spec revision:": one["specRevision"]}


def battery(one):
    lines = {"current temperature:": f"{one['temperature'] / 100:.2f} C",
             "temperature range:": f"{one['tempLow']} - {one['tempHigh']} degrees centigrade",
             "current voltage:": f"{one['voltage'] / 1000:.2f} V", "voltage range:": f"{one['voltLow']}mV - {one['voltHigh']}mV",
             "current capacity:": f"{one['capacity'] / 100:.2f} watt-hours",
             "max capacity:": f"{one['maxCapacity'] / 100:.2f} watt-hours", "battery power remaining:": f"{one['percentage']}%"}
    sensors = [word for bit, word in ((1, "temperature"), (2, "voltage"), (4, "Ecapacity")) if one["sensorSupport"] & bit]
    lines["feature supported (supported sensor):"] = " ".join(sensors) or "N/A"
    how = "Unknow"
    if one["status"] & 4:
        how = f"discharging and {one['minutesToEmpty']} minutes to empty,"
    if one["status"] & 2:
        how = f"charging and {one['minutesToFull']} minutes to full,"
    lines["status:"] = f"{how}recharge cycle {one['rechargeCycle']}"
    return lines


def enclosure(one):
    return {"Enclosure ID:": one["id"], "Status:": "OK" if one["status"] == "ok" else "Unstable",
            "Logical ID:": "0x" + one["logicalId"].upper(), "Vendor ID:": safe(one["vendor"]),
            "Product ID:": safe(one["product"]), "Revision Level:": safe(one["revision"])}


def element(one):
    lines = {"Element ID:": one["element"], "Element type:": TYPES.get(one["type"], "Unspecified element"),
             "Status:": "OK" if one["status"] == "ok" else one["status"], "Slot:": one.get("slot"),
             "Actual speed:": f"{one.get('rotation')} RPM", "Temperature:": f"{one.get('temperature')} Celsius",
             "Voltage:": f"{one.get('voltage', 0):.2f} V", "Display mode:": one.get("mode"),
             "Display characters:": "0x" + one.get("characters", "").upper()}
    if "speedCode" in one:
        lines["Speed code:"] = f"{one['speedCode']} ({FAN_SPEEDS[one['speedCode']]})"
    return lines, {flag.lower() for flag in one["flags"]}


def element_type(one):
    return {"Element type:": TYPES.get(one["type"], "Unspecified element"), "Number of elements:": one["count"],
            "Sub-enclosure ID:": one["subEnclosure"], "Text:": safe(one["text"])}
