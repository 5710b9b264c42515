-- SPDX-License-Identifier: GPL-3.0-or-later

-- Names every field of a recording of Quorvel (quorvel --record, quorvelctl record) in Wireshark
-- and tshark. Copyright: the same as the program's; license: GPL-3.0-or-later.
--
-- It takes the first link type that is free for one's own use. A packet of another use of it is
-- left alone: it does not begin with "Qv".

local quorvel = Proto("quorvel", "Touch frame")

local HEADER = 12
local FRAME = 64

local TO_FRAME, FROM_FRAME, LINK_BEGAN, LINK_ENDED = 0, 1, 2, 3
local CALIBRATION, OLD_RESET, SETTINGS, FIRMWARE = 0x01, 0x10, 0xA2, 0xA3
local SCAN, ROTATION, SERIAL_BAUD = 0xA5, 0xA7, 0xB1

local kinds = {
    [TO_FRAME] = "Host to frame", [FROM_FRAME] = "Frame to host",
    [LINK_BEGAN] = "Link began", [LINK_ENDED] = "Link ended",
}
local links = { [0] = "none", [1] = "USB", [2] = "serial" }
local results = { [0] = "done", [1] = "failed", [2] = "dropped" }
local ends = { [0] = "device gone", [1] = "replaced by another link", [2] = "closed" }
local classes = {
    [CALIBRATION] = "Calibration", [OLD_RESET] = "Reset of older devices",
    [SETTINGS] = "Settings", [FIRMWARE] = "Firmware", [SCAN] = "Scan",
    [ROTATION] = "Rotation", [SERIAL_BAUD] = "Serial rate",
}
local axes = { [1] = "X", [2] = "Y" }
local turns = { [0] = "0 degrees", [1] = "90 degrees", [2] = "180 degrees", [3] = "270 degrees" }
local switches = { [0] = "on", [1] = "off" }
local rates = {
    [0] = "50", "75", "110", "134", "150", "200", "300", "600", "1200", "1800", "2400", "4800",
    "9600", "14400", "19200", "38400", "56000", "57600", "76800", "115200", "128000", "256000",
}

local f = quorvel.fields
local function field(kind, name, title, ...)
    f[name] = ProtoField[kind]("quorvel." .. name, title, ...)
end

field("uint8", "version", "Format version", base.DEC)
field("uint8", "kind", "Kind", base.DEC, kinds)
field("uint8", "link", "Link", base.DEC, links)
field("uint8", "result", "Result", base.DEC, results)
field("uint8", "end", "End", base.DEC, ends)
field("uint32", "lost", "Records missing before this one", base.DEC)

field("uint8", "report_id", "Report id", base.HEX)
field("uint8", "class", "Class", base.HEX, classes)
field("uint8", "sub", "Sub-command", base.HEX)
field("uint8", "length", "Payload length", base.DEC)
field("string", "command", "Command")

field("uint16", "calibration.x", "Screen x", base.DEC)
field("uint16", "calibration.y", "Screen y", base.DEC)
field("uint16", "calibration.width", "Screen width", base.DEC)
field("uint16", "calibration.height", "Screen height", base.DEC)
field("uint16", "calibration.desktop_width", "Desktop width", base.DEC)
field("uint16", "calibration.desktop_height", "Desktop height", base.DEC)
field("int8", "calibration.deviation_x", "Deviation of x in percent", base.DEC)
field("int8", "calibration.deviation_y", "Deviation of y in percent", base.DEC)

field("uint8", "gestures.all", "Finger as input device", base.DEC)
field("uint8", "gestures.right_button", "Press and hold", base.DEC)
field("uint16", "gestures.right_button_time", "Its time in ms", base.DEC)
field("uint8", "gestures.right_button_range", "Its range", base.DEC)
field("uint8", "gestures.wheel", "Wheel", base.DEC)
field("uint8", "gestures.wheel_sensitivity", "Wheel sensitivity", base.DEC)

field("uint16", "adc.min", "ADC min", base.DEC)
field("uint16", "adc.max", "ADC max", base.DEC)
field("uint16", "adc.edge_min", "ADC edge min", base.DEC)
field("uint16", "adc.edge_max", "ADC edge max", base.DEC)
field("uint16", "adc.threshold", "ADC threshold", base.DEC)
field("uint16", "adc.edge_threshold", "ADC edge threshold", base.DEC)
field("uint16", "lights.x", "X lights", base.DEC)
field("uint16", "lights.y", "Y lights", base.DEC)

field("uint8", "light.axis", "Axis", base.DEC, axes)
field("uint16", "light.number", "Light", base.DEC)
field("int8", "light.offset", "Offset", base.DEC)
field("uint8", "light.switch", "Switch", base.DEC, switches)
field("uint8", "light.agc", "AGC", base.DEC)
field("uint16", "light.adc", "ADC", base.DEC)
field("uint16", "light.org", "ORG", base.DEC)
field("uint8", "light.off", "Switched off", base.DEC)

field("uint24", "firmware.revision", "Source revision", base.HEX)
field("uint32", "firmware.checksum", "Checksum", base.HEX)
field("uint24", "firmware.number", "Product number", base.HEX)
field("uint16", "firmware.date", "Product date", base.HEX)
field("uint8", "firmware.family", "Product family", base.HEX)

field("uint16", "scan.first", "First light", base.DEC)
field("uint8", "scan.level", "Level", base.DEC)
field("uint8", "scan.gain", "Gain", base.DEC)

field("uint8", "rotation.code", "Quarter turns", base.DEC, turns)
field("uint24", "baud.code", "Rate", base.DEC, rates)

local missing = ProtoExpert.new("quorvel.missing", "Records are missing before this one",
    expert.group.SEQUENCE, expert.severity.WARN)
local unknown = ProtoExpert.new("quorvel.unknown", "No command that is known",
    expert.group.UNDECODED, expert.severity.NOTE)
local unsent = ProtoExpert.new("quorvel.unsent", "The frame did not arrive",
    expert.group.RESPONSE_CODE, expert.severity.WARN)
quorvel.experts = { missing, unknown, unsent }

-- Whether scan pages carry two bytes a light, which depends on what the host has asked before:
-- the state now, and that of each packet.
local pairs_now = false
local pairs_at = {}
function quorvel.init()
    pairs_now = false
    pairs_at = {}
end

-- Values of 16 bits one after the other.
local function words(tree, frame, at, names)
    for index, name in ipairs(names) do
        tree:add_le(f[name], frame(at + 2 * (index - 1), 2))
    end
end

local adc_lines = {
    "adc.min", "adc.max", "adc.edge_min", "adc.edge_max", "adc.threshold", "adc.edge_threshold",
}

local function light_name(tree, frame)
    tree:add(f["light.axis"], frame(5, 1))
    tree:add_le(f["light.number"], frame(6, 2))
end

local function scan_page(tree, frame, is_pairs)
    tree:add_le(f["scan.first"], frame(5, 2))
    local last = math.min(frame(3, 1):uint() + 3, FRAME - 1)
    local at = 7
    while at <= last do
        tree:add(f["scan.level"], frame(at, 1))
        at = at + 1
        if is_pairs and at <= last then
            tree:add(f["scan.gain"], frame(at, 1))
            at = at + 1
        end
    end
end

local function rotation_code(tree, frame)
    tree:add(f["rotation.code"], frame(5, 1))
end

-- For each class and sub-command what it is called, and what reads the rest of it.

local host = {
    [CALIBRATION] = {
        [0x00] = { "calibration: begin" },
        [0x01] = { "calibration: step 1" },
        [0x02] = { "calibration: step 2" },
        [0x03] = { "calibration: step 3" },
        [0x04] = { "calibration: step 4" },
        [0x05] = { "calibration: check", function(tree, frame)
            words(tree, frame, 3, {
                "calibration.x", "calibration.y", "calibration.width", "calibration.height",
                "calibration.desktop_width", "calibration.desktop_height",
            })
        end },
        [0x06] = { "calibration: discard" },
        [0xFF] = { "calibration: save" },
    },
    [OLD_RESET] = { [0x00] = { "reset (older devices)" } },
    [SETTINGS] = {
        [0x00] = { "gestures: set", function(tree, frame)
            tree:add(f["gestures.all"], frame(5, 1))
            tree:add(f["gestures.right_button"], frame(6, 1))
            tree:add_le(f["gestures.right_button_time"], frame(7, 2))
            tree:add(f["gestures.right_button_range"], frame(9, 1))
            tree:add(f["gestures.wheel"], frame(10, 1))
            tree:add(f["gestures.wheel_sensitivity"], frame(11, 1))
        end },
        [0x03] = { "reset" },
        [0x04] = { "adc: set", function(tree, frame) words(tree, frame, 5, adc_lines) end },
        [0x05] = { "adc: read settings" },
        [0x06] = { "light: set offset", function(tree, frame)
            light_name(tree, frame)
            tree:add(f["light.offset"], frame(8, 1))
        end },
        [0x07] = { "light: read", light_name },
        [0x08] = { "light: switch", function(tree, frame)
            light_name(tree, frame)
            tree:add(f["light.switch"], frame(8, 1))
        end },
    },
    [FIRMWARE] = { [0x00] = { "firmware: read" } },
    [SCAN] = {
        [0x00] = { "scan: read light counts" },
        [0x01] = { "scan: read X" },
        [0x02] = { "scan: read Y" },
    },
    [ROTATION] = {
        [0x00] = { "rotation: set", rotation_code },
        [0x02] = { "rotation: read" },
    },
    [SERIAL_BAUD] = { [0x00] = { "serial rate: set", function(tree, frame)
        tree:add_le(f["baud.code"], frame(5, 3))
    end } },
}

local device = {
    [CALIBRATION] = {
        [0x00] = { "calibration: begun" },
        [0x01] = { "calibration: ready for step 1" },
        [0x02] = { "calibration: ready for step 2" },
        [0x03] = { "calibration: ready for step 3" },
        [0x04] = { "calibration: ready for step 4" },
        [0x05] = { "calibration: ready to check" },
        [0xFF] = { "calibration: finished", function(tree, frame)
            tree:add(f["calibration.deviation_x"], frame(4, 1))
            tree:add(f["calibration.deviation_y"], frame(5, 1))
        end },
    },
    [SETTINGS] = {
        [0x85] = { "adc: settings", function(tree, frame)
            words(tree, frame, 5, adc_lines)
            words(tree, frame, 17, { "lights.x", "lights.y" })
        end },
        [0x87] = { "light", function(tree, frame)
            light_name(tree, frame)
            tree:add(f["light.offset"], frame(8, 1))
            tree:add(f["light.agc"], frame(9, 1))
            tree:add_le(f["light.adc"], frame(10, 2))
            tree:add_le(f["light.org"], frame(12, 2))
            tree:add(f["light.off"], frame(14, 1))
        end },
    },
    [FIRMWARE] = { [0x80] = { "firmware", function(tree, frame)
        tree:add_le(f["firmware.revision"], frame(5, 3))
        tree:add_le(f["firmware.checksum"], frame(8, 4))
        -- Twenty bits, then sixteen, low byte first: they meet in the middle of byte 14.
        tree:add(f["firmware.number"], frame(12, 3),
            frame(12, 2):le_uint() + frame(14, 1):bitfield(4, 4) * 0x10000)
        tree:add(f["firmware.date"], frame(14, 3),
            frame(14, 1):bitfield(0, 4) + frame(15, 1):uint() * 0x10 +
            frame(16, 1):bitfield(4, 4) * 0x1000)
        tree:add(f["firmware.family"], frame(17, 1))
    end } },
    [SCAN] = {
        [0x80] = { "scan: light counts", function(tree, frame)
            words(tree, frame, 5, { "lights.x", "lights.y" })
        end },
        [0x81] = { "scan: X page", scan_page },
        [0x82] = { "scan: Y page", scan_page },
    },
    [ROTATION] = {
        [0x81] = { "rotation: default", rotation_code },
        [0x82] = { "rotation: now", rotation_code },
    },
}

-- As a device reads before its first report.
local function is_empty(frame)
    for at = 1, FRAME - 1 do
        if frame(at, 1):uint() ~= 0 then return false end
    end
    return true
end

local function dissect_frame(tree, frame, kind, is_pairs)
    local class, sub = frame(1, 1):uint(), frame(2, 1):uint()
    tree:add(f["report_id"], frame(0, 1))
    if kind == FROM_FRAME and is_empty(frame) then
        tree:add(f["command"], frame(1), "nothing yet"):set_generated()
        return "nothing yet"
    end
    tree:add(f["class"], frame(1, 1))
    tree:add(f["sub"], frame(2, 1))
    -- Calibration frames carry data where the others tell their length.
    if class ~= CALIBRATION then tree:add(f["length"], frame(3, 1)) end
    local command = ((kind == TO_FRAME and host or device)[class] or {})[sub]
    if not command then
        tree:add_proto_expert_info(unknown)
        return string.format("unknown: class 0x%02X, sub-command 0x%02X", class, sub)
    end
    tree:add(f["command"], frame(1, 2), command[1]):set_generated()
    if command[2] then command[2](tree, frame, is_pairs) end
    return command[1]
end

function quorvel.dissector(buffer, pinfo, root)
    local size = buffer:len()
    if size < HEADER or buffer(0, 2):string() ~= "Qv" or buffer(2, 1):uint() ~= 1 then return 0 end
    local kind = buffer(3, 1):uint()
    local tree = root:add(quorvel, buffer())
    tree:add(f["version"], buffer(2, 1))
    tree:add(f["kind"], buffer(3, 1))
    tree:add(f["link"], buffer(4, 1))
    local result = buffer(5, 1):uint()
    if kind == LINK_ENDED then
        tree:add(f["end"], buffer(5, 1))
    elseif kind ~= LINK_BEGAN then
        tree:add(f["result"], buffer(5, 1))
        if result ~= 0 then tree:add_proto_expert_info(unsent) end
    end
    tree:add_le(f["lost"], buffer(8, 4))
    if buffer(8, 4):le_uint() > 0 then tree:add_proto_expert_info(missing) end

    pinfo.cols.protocol = "Touch frame"
    local from_device = kind == FROM_FRAME
    pinfo.cols.src = from_device and "frame" or "host"
    pinfo.cols.dst = from_device and "host" or "frame"
    local info = kinds[kind] or "unknown kind"
    if (kind == TO_FRAME or from_device) and size == HEADER + FRAME then
        local frame = buffer(HEADER, FRAME):tvb()
        if not pinfo.visited then
            local class, sub = frame(1, 1):uint(), frame(2, 1):uint()
            if not from_device and result == 0 then
                if class == SCAN and sub == 0x00 then pairs_now = false end
                if class == SETTINGS and sub == 0x05 then pairs_now = true end
            end
            pairs_at[pinfo.number] = pairs_now
        end
        info = dissect_frame(tree, frame, kind, pairs_at[pinfo.number])
        if result ~= 0 then info = info .. " (" .. (results[result] or "?") .. ")" end
    elseif kind == LINK_BEGAN or kind == LINK_ENDED then
        info = info .. " (" .. (links[buffer(4, 1):uint()] or "?") .. ")"
    end
    pinfo.cols.info = info
    tree:append_text(", " .. info)
    return size
end

DissectorTable.get("wtap_encap"):add(wtap.USER0, quorvel)
