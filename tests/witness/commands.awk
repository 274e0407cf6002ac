# Compares what the client sends in a session with a table, as table.awk does.
#
# Which: the address of READREG, WRITEREG, READMEM and WRITEMEM, in hex; else "-".
# Value: also "=length", the length of the datagram by that which the message states, and "=which".
#
# What tshark does not show, or what only several packets show, are fields, too:
#   value     that WRITEREG writes, in hex
#   id        "next" after that of the command before it from the same port, "later" if others are between
#             them, or "again" with the same bytes
#   answered  whether the camera answered, to this or to the same command
#   from      the channel whose port it comes from: "stream", "messages", else "control"
#   needless  how many PACKETRESEND ask for what has come: "few", as packets are on their way
#   to        whether the camera said that it sends from there
#   messages  how many there are of it
# Datagrams to port 9 stand between programs: the system may give a port of one to the next, too.
# Datagrams that open a firewall are PUNCH, with the channel for which; that of messages is told to the camera
# later. Whoever writes CCP is a SESSION:
#   first, last  what it writes first and last
#   heartbeat    whether it reads CCP every 1.5 s
#   open         channels that it leaves open

# What is right in this packet.
function right_value(right, field, which) {
    if (right == "=length") return number(show["gvcp.cmd.payloadlength"]) + 16
    if (right == "=which") return "0x" which
    return right
}

function payload(first, count) { return substr(show["udp.payload"], 2 * first + 1, 2 * count) }

function message_of() {
    if (show["gvcp.cmd.command"] in command_names) return command_names[show["gvcp.cmd.command"]]
    if (show["gvcp.ack"] in ack_names) return ack_names[show["gvcp.ack"]]
    return length(show["udp.payload"]) <= 2 ? "PUNCH" : "UNKNOWN"
}

function which_of(message) {
    if (message ~ /^(READ|WRITE)/) return payload(8, 4)
    return message == "PUNCH" ? channel_of(own(show["udp.srcport"])) : "-"
}

# A port of this program.
function own(port) { return program "." port }

function channel_of(port) { return port in channels ? channels[port] : message == "PUNCH" ? "messages" : "control" }

/<\/packet>/ {
    if (show["udp.dstport"] == "9") {
        ++program
    } else if (show["ip.src"] == client) {
        note_command()
    } else {
        note_answer()
    }
}

# ---- What cameras send --------------------------------------------------------------------------

function note_answer(    i) {
    if ("complaint" in show) fault("a camera's message: " show["complaint"])
    if ("gvsp.format" in show) came[own(show["udp.dstport"]), block_id(), packet_id()] = 1
    for (i = 1; i <= num_fields; ++i)
        if (field[i] ~ /^gvcp\.bootstrap\.(mcsp|scspx)$/) sources[show[field[i]]] = 1
    if ("gvcp.ack" in show) answered[own(show["udp.dstport"]), show["gvcp.cmd.req_id"]] = 1
}

function block_id() { return show["gvsp.blockid16"] show["gvsp.blockid64"] }
function packet_id() { return show["gvsp.packetid24"] show["gvsp.packetid32"] }

# ---- What the client sends ----------------------------------------------------------------------

function note_command(    camera, which, port, i) {
    camera = show["ip.dst"] in camera_at ? camera_at[show["ip.dst"]] : "ALL"
    message = message_of()
    which = which_of(message)
    port = own(show["udp.srcport"])
    ++num_messages[camera SUBSEP message SUBSEP which]
    for (i = 1; i <= num_fields; ++i)
        if (field[i] !~ /^(frame\.(number|time_epoch)|ip\.(src|dst)|udp\.payload|gvcp\.response_(in|to))$/)
            compare(camera, message, which, field[i], show[field[i]])
    compare(camera, message, which, "from", channel_of(port))
    if (message !~ /_ACK|PUNCH/) compare_id(camera, message, which, port)
    if (message == "WRITEREG") note_write(camera, which, port)
    if (message == "READREG" && which == "00000a00") note_heartbeat(port)
    if (message == "PACKETRESEND" && asks_for_what_came(port)) ++num_needless[camera]
    if (message ~ /_ACK|PUNCH/) destinations[camera SUBSEP message SUBSEP which SUBSEP show["udp.dstport"]] = 1
}

function compare_id(camera, message, which, port,    id, before, step, order) {
    id = number(show["gvcp.cmd.req_id"])
    before = last_id[port]
    step = before == "" ? 1 : (id - before + 65535) % 65535
    order = step == 1 ? "next" : step == 0 ? "again" : step < 1000 ? "later" : id " after " before
    if (order == "again" && show["udp.payload"] != last_command[port]) order = "again, but another command"
    compare(camera, message, which, "id", order)
    last_id[port] = id
    last_command[port] = show["udp.payload"]
    if (message !~ /PACKETRESEND|DISCOVERY|FORCEIP|ACTION/)
        asked[camera SUBSEP message SUBSEP which SUBSEP port SUBSEP show["gvcp.cmd.req_id"]] = 1
}

function note_write(camera, which, port,    value) {
    value = payload(12, 4)
    compare(camera, "WRITEREG", which, "value", value)
    if (which == "00000a00" && value !~ /0$/) sessions[port] = camera
    if (!(port in first_write)) first_write[port] = which
    last_write[port] = which "=" value
    if (which == "00000d00" || which == "00000b00") {
        # The system gives the port of a channel that is closed to another.
        if ((port, which) in open_channel) delete channels[own(number("0x" substr(open_channel[port, which], 5)))]
        open_channel[port, which] = value
        if (value !~ /^0*$/) channels[own(number("0x" substr(value, 5)))] = which == "00000b00" ? "messages" : "stream"
    }
    if (which == "00000a00") note_heartbeat(port)
}

function note_heartbeat(port) {
    if (port in beat && show["frame.time_epoch"] - beat[port] > longest[port])
        longest[port] = show["frame.time_epoch"] - beat[port]
    beat[port] = show["frame.time_epoch"]
}

function asks_for_what_came(port,    block, id, last) {
    block = number("gvcp.cmd.resend.blockid" in show ? show["gvcp.cmd.resend.blockid"] : show["gvcp.cmd.resend.extendedblockid"])
    last = number(show["gvcp.cmd.resend.lastpacketid"])
    for (id = number(show["gvcp.cmd.resend.firstpacketid"]); id <= last; ++id)
        if ((port, block, id) in came) return 1
    return 0
}

# ---- All of it ----------------------------------------------------------------------------------

function compare_sessions(    port, left) {
    for (port in sessions) {
        compare(sessions[port], "SESSION", "-", "first", first_write[port])
        compare(sessions[port], "SESSION", "-", "last", last_write[port])
        compare(sessions[port], "SESSION", "-", "heartbeat", longest[port] < 1.5)
        left = open_channel[port, "00000d00"] open_channel[port, "00000b00"]
        compare(sessions[port], "SESSION", "-", "open", left ~ /^0*$/ ? "none" : left)
    }
}

BEGIN {
    split("0002 DISCOVERY 0004 FORCEIP 0040 PACKETRESEND 0080 READREG 0082 WRITEREG 0084 READMEM 0086 WRITEMEM " \
          "0100 ACTION", pairs)
    for (i = 1; i in pairs; i += 2) command_names["0x" pairs[i]] = pairs[i + 1]
    ack_names["0x00c1"] = "EVENT_ACK"
    ack_names["0x00c3"] = "EVENTDATA_ACK"
    split(cameras, pairs)
    for (i = 1; i in pairs; i += 2) camera_at[pairs[i]] = pairs[i + 1]
}

END {
    for (key in asked) {
        split(key, parts, SUBSEP)
        compare(parts[1], parts[2], parts[3], "answered", (parts[4], parts[5]) in answered)
    }
    for (key in num_messages) {
        split(key, parts, SUBSEP)
        compare(parts[1], parts[2], parts[3], "messages", num_messages[key])
        if (parts[2] == "PACKETRESEND")
            compare(parts[1], parts[2], parts[3], "needless",
                num_needless[parts[1]] <= num_messages[key] / 50 ? "few" : num_needless[parts[1]])
    }
    for (key in destinations) {
        split(key, parts, SUBSEP)
        compare(parts[1], parts[2], parts[3], "to", parts[4] in sources ? "camera" : parts[4])
    }
    compare_sessions()
    exit table_failed()
}
