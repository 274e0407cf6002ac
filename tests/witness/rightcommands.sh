# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness-zelcam
# What tshark must read of zelcam's messages in the session of commands.sh, in the form of tests/witness/table.awk
# and commands.awk: camera, message, which, field, value; the last row that fits counts. The values come from
# the session, the addresses of the namespaces, and what the standard says of the messages.

right_commands() {
    local host
    # shellcheck disable=SC2086  # four numbers
    host=$(printf %02x ${here//./ })
    cat <<END
# ---- Every command ----
* .* .* ip.flags.df any: messages of control are never fragmented
* .* .* udp.srcport any: the system chooses it
* .* .* udp.dstport 3956
* .* .* udp.length =length
* .* .* gvcp.message_key_code 0x42
* .* .* gvcp.cmd.flags 0x01
* .* .* gvcp.cmd.flag.acq_required 1
* .* .* gvcp.cmd.flag.(64bitid|scheduledactioncommand|allowbroadcastacq) 0
* .* .* gvcp.cmd.req_id any: see id
* .* .* id next
* .* .* from control
* .* .* messages any: as many as it needs
* .* .* answered 1
* DISCOVERY .* gvcp.cmd.command 0x0002
* FORCEIP .* gvcp.cmd.command 0x0004
* PACKETRESEND .* gvcp.cmd.command 0x0040
* READREG .* gvcp.cmd.command 0x0080
* WRITEREG .* gvcp.cmd.command 0x0082
* READMEM .* gvcp.cmd.command 0x0084
* WRITEMEM .* gvcp.cmd.command 0x0086
* ACTION .* gvcp.cmd.command 0x0100
* DISCOVERY .* gvcp.cmd.payloadlength 0x0000
* FORCEIP .* gvcp.cmd.payloadlength 0x0038
* READREG .* gvcp.cmd.payloadlength 0x00(04|08|0c)
* WRITEREG .* gvcp.cmd.payloadlength 0x0008
* READMEM .* gvcp.cmd.payloadlength 0x0008
* WRITEMEM .* gvcp.cmd.payloadlength 0x0044
* ACTION .* gvcp.cmd.payloadlength 0x000c

# ---- To all: limited and directed, and for cameras of other networks so that all hear the answer ----
ALL DISCOVERY|FORCEIP .* gvcp.cmd.flags 0x[01]1
ALL DISCOVERY|FORCEIP .* gvcp.cmd.flag.allowbroadcastacq [01]
# The ports of an adapter count together, and only one of them reads registers.
* DISCOVERY|FORCEIP .* id (next|later|again.*)
ALL FORCEIP .* gvcp.cmd.forceip.macaddress 02:57:53:01:00:01
ALL FORCEIP .* gvcp.cmd.forceip.ip 10.77.0.11|$spare
ALL FORCEIP .* gvcp.cmd.forceip.subnetmask 255.255.255.0
ALL FORCEIP .* gvcp.cmd.forceip.defaultgateway 0.0.0.0|10.77.0.254
* ACTION .* id next|later
* ACTION .* gvcp.cmd.flags 0x00
* ACTION .* gvcp.cmd.flag.acq_required 0
ALL ACTION .* gvcp.cmd.action.(devicekey|groupkey|groupmask) 0x00000000

# ---- Registers and memory ----
* READ(REG|MEM) .* gvcp.cmd.read(reg|mem).bootstrapregister =which
* READREG .* gvcp.cmd.readreg.bootstrapregister 0x........(,0x........)*
* READ(REG|MEM) .* gvcp.bootstrap.custom.register.(write|read) =which
* READMEM .* gvcp.cmd.readmem.count 0x0[0-2].[048c]
* WRITEREG .* gvcp.cmd.writereg.bootstrapregister =which
* WRITEREG .* gvcp.bootstrap.custom.register.write =which
* WRITEREG .* (value|gvcp.bootstrap.custom.register.value) any: of a feature, which aravis would set so, too
* WRITEMEM 00010340 gvcp.cmd.writemem.data 436f6d6d616e6473(00)*

# Control, the heartbeat, and what answers may say.
* WRITEREG 00000a00 value 0000000[02]
* WRITEREG 00000a00 gvcp.bootstrap.control.(switchoverkey|switchoverenable|exclusiveaccess) 0(x00000000)?
* WRITEREG 00000a00 gvcp.bootstrap.control.controlaccess [01]
* WRITEREG 00000938 value 00000bb8
* WRITEREG 00000938 gvcp.bootstrap.heartbeattimeout 3000
* WRITEREG 00000954 value 00040006
* WRITEREG 00000954 gvcp.bootstrap.config.(pendingackenable|statuscodes.*) 1
* WRITEREG 00000954 gvcp.bootstrap.config.(heartbeatdisable|ieee1588enable|unconditional.*) 0

# The message channel.
* WRITEREG 00000b00 value 0000....
* WRITEREG 00000b00 gvcp.bootstrap.mcp.networkinterfaceindex 0
* WRITEREG 00000b00 gvcp.bootstrap.mcp.hostport any: the system chooses it
* WRITEREG 00000b10 value $host
* WRITEREG 00000b10 gvcp.bootstrap.mcda $here
* WRITEREG 00000b14 value 0000012c
* WRITEREG 00000b14 gvcp.bootstrap.mctt 300
* WRITEREG 00000b18 value 00000003
* WRITEREG 00000b18 gvcp.bootstrap.mcrc 3

# The stream channel: a test packet of the size that the camera has, which is not to be fragmented.
* WRITEREG 00000d00 value 0000....
* WRITEREG 00000d00 gvcp.bootstrap.scpx.(networkinterfaceindex|direction) 0
* WRITEREG 00000d00 gvcp.bootstrap.scpx.hostport any: the system chooses it
* WRITEREG 00000d18 value $host
* WRITEREG 00000d18 gvcp.bootstrap.scdax $here
* WRITEREG 00000d04 value (c|0)00005dc
* WRITEREG 00000d04 gvcp.bootstrap.scpsx.packetsize 1500
* WRITEREG 00000d04 gvcp.bootstrap.scpsx.pixelendianness 0
* WRITEREG 00000d04 gvcp.bootstrap.scpsx.(firetestpacket|donotfragment) [01]

# ---- Packets again: from the port of the stream, which opens it in a firewall ----
* PACKETRESEND .* from stream
* PACKETRESEND .* gvcp.cmd.flag.acq_required 0
* PACKETRESEND .* gvcp.cmd.flag.64bitid [01]
* PACKETRESEND .* gvcp.cmd.flags 0x[01]0
* PACKETRESEND .* gvcp.cmd.payloadlength 0x00(0c|14)
* PACKETRESEND .* gvcp.cmd.resend.streamchannelindex 0x0000
* PACKETRESEND .* gvcp.cmd.resend.(block|extendedblock|firstpacket|lastpacket)id any: see needless
* PACKETRESEND .* needless few

# ---- Events are acknowledged where they come from ----
* EVENTDATA_ACK .* from messages
* EVENTDATA_ACK .* udp.dstport any: see to
* EVENTDATA_ACK .* gvcp.ack 0x00c3
* EVENTDATA_ACK .* gvcp.cmd.status 0x0000
* EVENTDATA_ACK .* gvcp.cmd.payloadlength 0x0000
* EVENTDATA_ACK .* gvcp.cmd.payloaddata
* EVENTDATA_ACK .* to camera

# ---- Datagrams that open a firewall, to where streams and messages come from ----
* PUNCH .* udp.length [89]
* PUNCH .* udp.dstport any: see to
* PUNCH .* to camera
* PUNCH stream from stream
* PUNCH messages from messages

# ---- Sessions ----
* SESSION .* first 00000a00
* SESSION .* last 00000a00=00000000
* SESSION .* heartbeat 1
* SESSION .* open none
END
}
