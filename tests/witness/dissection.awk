# Compares what cameras send in a session with a table, as table.awk does.
#
# Which: the id of a literal command or of an event; the port to which a packet of a stream goes, or "-" for
# those that aravis chooses; of READMEM by aravis, the address.
# Value: also what the command says: "=request", in the same field; "=pairs" and "=bytes", how many; "=count",
# that and an address. "=length" is the length that the message states, "=which" is said above.
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
        if (field[i] !~ /^(frame\.(number|time_epoch)|ip\.src|udp\.payload|gvcp\.response_to)$/)
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
    exit table_failed()
}
