# Compares what tshark reads of a session (PDML of both directions) with a table of what is right, which
# is read first. A row: camera, message, which, field, value. All but the value are patterns, and the last
# row that fits a field counts. It fails for a field without a row, and for a row without a field: so the
# table cannot fall behind.
#
# Which: the id of a literal command or of an event; the port to which a packet of a stream goes, or "-" for
# those that aravis chooses; of READMEM by aravis, the address.
# Value: a pattern of what tshark shows, FROM..TO for times, "any:" and the reason why nothing is compared,
# or what the command says: "=request", in the same field; "=pairs" and "=bytes", how many; "=count", that
# and an address. "=length" is the length that the message states, "=which" is said above. A field that a
# packet has several times has all its values, with commas.
#
# What only several packets show are fields, too. How often a message comes: "messages". Of RESENT_DATA:
# "same", whether it is what was sent before. Of blocks, with the message BLOCK and PORT.ID for which:
#   follows  the id less that of the block before, which for the first block is 0
#   later    whether the time of the leader is after that of the block before
#   lacking  how many packets, from 0 to the trailer, did not come
#   bytes    in packets of data, in the order of their ids
#   offsets  whether each packet of a multi-part block says how many bytes were before it
#   ends     for each that says that it ends a part, how far from the trailer it is, and the part
#   trailer, time, last: the id of the trailer, the time of the leader, whether no block follows

function fault(text) {
    print text
    ++num_faults
}

function fits(text, pattern) { return text ~ ("^(" pattern ")$") }

function number(hex,    i, value) {
    value = 0
    for (i = 3; i <= length(hex); ++i) value = value * 16 + index("0123456789abcdef", substr(hex, i, 1)) - 1
    return value
}

# ---- The table ----------------------------------------------------------------------------------

# The row for a field of a message; 0 for none.
function row_for(camera, message, which, field,    key, i) {
    key = camera SUBSEP message SUBSEP which SUBSEP field
    if (key in known_row) return known_row[key]
    for (i = num_rows; i > 0; --i)
        if (fits(field, row_field[i]) && fits(camera, row_camera[i]) && fits(message, row_message[i]) &&
            fits(which, row_which[i])) break
    return known_row[key] = i
}

# What is right in this packet; "=..." for what others or the packet itself say.
function right_value(right, field, which,    command) {
    command = show["gvcp.response_to"]
    if (right == "=request") return request[command, field]
    if (right == "=pairs") return sprintf("0x%04x", number(request[command, "gvcp.cmd.payloadlength"]) / 8)
    if (right == "=bytes") return sprintf("0x%04x", number(request[command, "gvcp.cmd.payloadlength"]) - 4)
    if (right == "=count") return sprintf("0x%04x", number(request[command, "gvcp.cmd.readmem.count"]) + 4)
    if (right == "=length") return number(show["gvcp.cmd.payloadlength"]) + 16
    if (right == "=which") return "0x" which
    return right
}

function is_right(value, right,    ends) {
    if (right ~ /^any:/) return 1
    if (split(right, ends, /\.\./) == 2) return value >= ends[1] && value <= ends[2]
    return fits(value, right)
}

function compare(camera, message, which, field, value,    row, right) {
    row = row_for(camera, message, which, field)
    is_used[row] = 1
    right = row ? right_value(row_value[row], field, which) : "none: there is no row for it"
    if (!is_right(value "", right))
        fault(camera " " message " " which ": " field " = " substr(value, 1, 80) ", not " right)
}

NR == FNR {
    if ($0 ~ /^ *(#.*)?$/) next
    ++num_rows
    row_camera[num_rows] = $1 == "*" ? ".*" : $1
    row_message[num_rows] = $2
    row_which[num_rows] = $3
    row_field[num_rows] = $4
    row_text[num_rows] = $0
    sub(/^[^ ]+ +[^ ]+ +[^ ]+ +[^ ]+ */, "")
    row_value[num_rows] = $0
    next
}

# ---- Packets ------------------------------------------------------------------------------------

function attribute(name,    begin, rest) {
    begin = index($0, " " name "=\"")
    if (!begin) return ""
    rest = substr($0, begin + length(name) + 3)
    return substr(rest, 1, index(rest, "\"") - 1)
}

/<packet>/ {
    split("", show)
    num_fields = 0
}

/<proto name="/ { protocol = attribute("name") }

# Of UDP, tshark says that a port is one of traceroute, and aravis takes any port.
protocol ~ /^(gvcp|gvsp|_ws\.malformed)$/ && /<field name="_ws.expert.message"/ {
    add_field("complaint", attribute("show"))
}

/<field name="(gv|ip\.src"|ip\.dst"|ip\.flags\.df"|udp\.(src|dst)port"|udp\.length"|udp\.payload"|frame\.number")/ {
    name = attribute("name")
    add_field(name, attribute(name ~ /(data|payload)$/ ? "value" : "show"))
}

function add_field(name, text) {
    if (!(name in show)) {
        show[name] = text
        field[++num_fields] = name
    } else if (name != "gvcp.response_to") {
        show[name] = show[name] "," text
    }
}

function message_of(    format, resent) {
    if ("gvsp.format" in show) {
        if (show["gvsp.blockid16"] == "0") return "TEST"
        if (show["gvsp.status"] ~ /^0x8/) return "REFUSED"
        format = number(show["gvsp.format"]) % 16
        resent = show["gvsp.status"] == "0x0100" ? "RESENT_" : ""
        return resent (format == 1 ? "LEADER" : format == 2 ? "TRAILER" : format == 4 ? "ALLIN" : "DATA")
    }
    if (show["gvcp.ack"] in ack_names) return ack_names[show["gvcp.ack"]]
    if (show["gvcp.cmd.command"] in command_names) return command_names[show["gvcp.cmd.command"]]
    return "UNKNOWN"
}

function which_of(message,    port, id) {
    if ("gvsp.format" in show) {
        port = show["udp.dstport"] ~ /^2[01]0../ ? show["udp.dstport"] : "-"
        return message != "REFUSED" ? port : port "." block_id() "." packet_id()
    }
    id = substr(show["gvcp.cmd.req_id"], 3)
    if (id ~ /^[1-9][0-4]/ || show["gvcp.cmd.command"] in command_names) return id
    return "gvcp.cmd.readmem.address" in show ? substr(show["gvcp.cmd.readmem.address"], 3) : "-"
}

function block_id() { return show["gvsp.blockid16"] show["gvsp.blockid64"] }
function packet_id() { return show["gvsp.packetid24"] show["gvsp.packetid32"] }

# A command says in different fields what it reads, by what is there.
function keep_request(    i, frame, name) {
    frame = show["frame.number"]
    for (i = 1; i <= num_fields; ++i) {
        name = field[i]
        if (name ~ /^gvcp\.(cmd\.readmem\.bootstrapregister|bootstrap\.custom\.register\.)/)
            request[frame, "gvcp.cmd.readmem.address"] = show[name]
        request[frame, name] = show[name]
    }
}

/<\/packet>/ {
    if (show["ip.src"] == client) {
        keep_request()
        next
    }
    camera = camera_at[show["ip.src"]]
    message = message_of()
    which = which_of(message)
    ++num_messages[camera SUBSEP message SUBSEP which]
    for (i = 1; i <= num_fields; ++i)
        if (field[i] !~ /^(frame\.number|ip\.src|udp\.payload|gvcp\.response_to)$/)
            compare(camera, message, which, field[i], show[field[i]])
    if (message ~ /(LEADER|DATA|TRAILER)$/) keep_packet(message ~ /^RESENT/)
}

# ---- Blocks -------------------------------------------------------------------------------------

# A packet of a block that is not there yet begins it, and one that is sent again must be the same. What is
# sent again to who asks belongs to no block.
function keep_packet(is_resent,    stream, block, id, bytes) {
    stream = camera SUBSEP which SUBSEP show["udp.srcport"] SUBSEP show["udp.dstport"]
    block = stream SUBSEP block_id()
    id = packet_id()
    bytes = message ~ /DATA$/ ? data() : ""
    original = camera SUBSEP show["udp.srcport"] SUBSEP block_id() SUBSEP id
    if (is_resent && message ~ /DATA$/ && original in sent)
        compare(camera, message, which, "same", bytes == sent[original])
    if (!is_resent) sent[original] = bytes
    if (which ~ /^200/) return
    if (!(block in block_before)) {
        blocks[++num_blocks] = block
        block_before[block] = last_block[stream]
        last_block[stream] = block
    }
    packets[block, id] = bytes
    if (message ~ /LEADER$/) time[block] = show["gvsp.timestamp"]
    if (message ~ /TRAILER$/) trailer[block] = id
    if ("gvsp.addressoffset" in show) offset[block, id] = number(show["gvsp.addressoffset"])
    if (show["gvsp.endofpart"] == "1") ended_part[block, id] = show["gvsp.partid"]
}

# tshark does not show the data of a packet with ids of 16 bits that is sent again.
function data() {
    return "gvsp.payloaddata" in show ? show["gvsp.payloaddata"] : substr(show["udp.payload"], 17)
}

function show_block(block,    parts, parts_before, is_last, which, id, lacking, bytes, wrong_offsets, part_ends, before) {
    split(block, parts, SUBSEP)
    is_last = last_block[parts[1] SUBSEP parts[2] SUBSEP parts[3] SUBSEP parts[4]] == block
    which = parts[2] "." (parts[2] == "-" && is_last ? "last" : parts[5])
    lacking = wrong_offsets = 0
    bytes = part_ends = ""
    for (id = 0; id <= trailer[block] + 0; ++id) {
        if (!((block, id) in packets)) ++lacking
        if ((block, id) in offset && offset[block, id] != length(bytes) / 2) ++wrong_offsets
        if ((block, id) in ended_part) part_ends = part_ends "," (trailer[block] - id) "/" ended_part[block, id]
        bytes = bytes packets[block, id]
    }
    before = block_before[block]
    split(before, parts_before, SUBSEP)
    compare(parts[1], "BLOCK", which, "follows", parts[5] - parts_before[5])
    compare(parts[1], "BLOCK", which, "later", time[block] > time[before] "")
    compare(parts[1], "BLOCK", which, "lacking", lacking)
    compare(parts[1], "BLOCK", which, "bytes", length(bytes) / 2)
    compare(parts[1], "BLOCK", which, "trailer", trailer[block])
    compare(parts[1], "BLOCK", which, "time", time[block])
    compare(parts[1], "BLOCK", which, "last", is_last)
    if ((block, 1) in offset) {
        compare(parts[1], "BLOCK", which, "offsets", wrong_offsets == 0)
        compare(parts[1], "BLOCK", which, "ends", part_ends)
    }
    print bytes > (folder "/block-" parts[1] "-" which)
}

# ---- All of it ----------------------------------------------------------------------------------

BEGIN {
    split("0003 DISCOVERY_ACK 0005 FORCEIP_ACK 0081 READREG_ACK 0083 WRITEREG_ACK 0085 READMEM_ACK " \
          "0087 WRITEMEM_ACK 0089 PENDING_ACK 0101 ACTION_ACK", pairs)
    for (i = 1; i in pairs; i += 2) ack_names["0x" pairs[i]] = pairs[i + 1]
    command_names["0x00c0"] = "EVENT_CMD"
    command_names["0x00c2"] = "EVENTDATA_CMD"
    split(cameras, pairs)
    for (i = 1; i in pairs; i += 2) camera_at[pairs[i]] = pairs[i + 1]
}

END {
    for (key in num_messages) {
        split(key, parts, SUBSEP)
        compare(parts[1], parts[2], parts[3], "messages", num_messages[key])
    }
    for (i = 1; i <= num_blocks; ++i) show_block(blocks[i])
    for (i = 1; i <= num_rows; ++i)
        if (!(i in is_used)) fault("nothing fits the row: " row_text[i])
    exit num_faults != 0
}
