# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness
# What tshark must read in the session, as tests/witness/dissection.awk compares it: camera, message, which,
# field, value; the last row that fits counts. The values come from the configuration, the addresses of the
# namespaces, the requests, and what the standard says of the messages. Which command an id belongs to is in
# session.sh. Variables are what literal datagrams read there.

right_values() {
    cat <<END
* .* .* ip.dst $here
* .* .* udp.dstport any: aravis chooses it; of literal datagrams the message says which
* .* .* udp.length any: compared by the bytes of blocks
* .* .* messages any: as many as aravis asks for, and as a block has
* .* [1-9]... messages 1

# ---- Answers ----
* .*_ACK .* ip.flags.df any: messages of control are never fragmented
* .*_ACK .* udp.srcport 3956
* .*_ACK .* gvcp.cmd.req_id =request
* DISCOVERY_ACK - gvcp.cmd.req_id 0xffff
* FORCEIP_ACK|PENDING_ACK .* gvcp.cmd.req_id =which
* .*_ACK .* udp.length =length
* DISCOVERY_ACK .* gvcp.cmd.payloadlength 0x00f8
* READREG_ACK .* gvcp.cmd.payloadlength =request
* READMEM_ACK .* gvcp.cmd.payloadlength =count
* (WRITE(REG|MEM)|PENDING)_ACK .* gvcp.cmd.payloadlength 0x0004
* (FORCEIP|ACTION)_ACK .* gvcp.cmd.payloadlength 0x0000
MONO READ(REG|MEM)_ACK 20(0.|10) gvcp.cmd.payloadlength 0x0000
* .*_ACK .* gvcp.cmd.payloaddata
* .*_ACK .* gvcp.cmd.status 0x0000
* DISCOVERY_ACK .* gvcp.ack 0x0003
* FORCEIP_ACK .* gvcp.ack 0x0005
* READREG_ACK .* gvcp.ack 0x0081
* WRITEREG_ACK .* gvcp.ack 0x0083
* READMEM_ACK .* gvcp.ack 0x0085
* WRITEMEM_ACK .* gvcp.ack 0x0087
* PENDING_ACK .* gvcp.ack 0x0089
* ACTION_ACK .* gvcp.ack 0x0101
* READREG_ACK .* gvcp.cmd.readreg.bootstrapregister =request
* READMEM_ACK .* gvcp.cmd.readmem.address =request
* WRITEREG_ACK .* gvcp.cmd.writereg.dataindex =pairs
* WRITEMEM_ACK .* gvcp.cmd.writemem.dataindex =bytes
MONO PENDING_ACK 2021 gvcp.ack.pendingack.timetocompletion 0x0096

# What is refused: how, and how much was done before.
MONO UNKNOWN - .* any: tshark does not know an answer to a command that there is not
MONO UNKNOWN - messages 1
MONO WRITEMEM_ACK 2002 gvcp.cmd.status 0x8001
MONO .*_ACK 200[34] gvcp.cmd.status 0x8002
MONO .*_ACK 200[56] gvcp.cmd.status 0x8003
MONO .*_ACK 200[789] gvcp.cmd.status 0x8004
MONO .*_ACK 200[ab] gvcp.cmd.status 0x8005
MONO .*_ACK 20(0c|10) gvcp.cmd.status 0x8006
MONO WRITEREG_ACK 200d gvcp.cmd.status 0x8007
MONO WRITEREG_ACK 200[367c] gvcp.cmd.writereg.dataindex 0x0000
MONO WRITEREG_ACK 200[9d] gvcp.cmd.writereg.dataindex 0x0001
MONO WRITEMEM_ACK 200[28] gvcp.cmd.writemem.dataindex 0x0000
PACKED ACTION_ACK 7009 gvcp.cmd.status 0x8016
PACKED ACTION_ACK 700a gvcp.cmd.status 0x8013
PACKED ACTION_ACK 7019 gvcp.cmd.status 0x8015
PACKED ACTION_ACK 7021 gvcp.cmd.status 0x8fff

# ---- Who a camera is, in answers to discovery and in registers ----
* DISCOVERY_ACK .* gvcp.bootstrap.specversion 0x00020001
* .* .* gvcp.bootstrap.specversion.major 0x00000002
* .* .* gvcp.bootstrap.specversion.minor 0x00000001
* DISCOVERY_ACK .* gvcp.ack.discovery.devicemode 0x80000001
* .* .* gvcp.bootstrap.devicemode.endianness 1
* .* .* gvcp.bootstrap.devicemode.deviceclass 0x00000000
* .* .* gvcp.bootstrap.devicemode.currentlinkconfiguration 0x00000000
* .* .* gvcp.bootstrap.devicemode.characterset 0x00000001
MONO DISCOVERY_ACK .* gvcp.cmd.discovery.devicemacaddress 02:57:53:01:00:01
PACKED|MOVED DISCOVERY_ACK .* gvcp.cmd.discovery.devicemacaddress 02:57:53:01:00:02
COLOUR DISCOVERY_ACK .* gvcp.cmd.discovery.devicemacaddress 02:57:53:01:00:03
BAYER DISCOVERY_ACK .* gvcp.cmd.discovery.devicemacaddress 02:57:53:01:00:04
MONO READREG_ACK .* gvcp.bootstrap.machigh 0x00000257
MONO READREG_ACK .* gvcp.bootstrap.maclow 0x53010001
* DISCOVERY_ACK .* gvcp.bootstrap.supportedipconfig 0x00000007
* DISCOVERY_ACK .* gvcp.bootstrap.currentipconfig 0x00000006
* .* .* gvcp.bootstrap.ipconfig.canhandlepauseframes 0,0
* .* .* gvcp.bootstrap.ipconfig.cangeneratepauseframes 0,0
* .* .* gvcp.bootstrap.ipconfig.lla 1,1
* .* .* gvcp.bootstrap.ipconfig.dhcp 1,1
* DISCOVERY_ACK .* gvcp.bootstrap.ipconfig.persistentip 1,0
MONO READREG_ACK .* gvcp.bootstrap.ipconfig.persistentip 1,1
MONO .* .* gvcp.bootstrap.currentip 10.77.0.11
PACKED .* .* gvcp.bootstrap.currentip 10.77.0.12
MOVED .* .* gvcp.bootstrap.currentip $spare
COLOUR .* .* gvcp.bootstrap.currentip 10.77.0.13
BAYER .* .* gvcp.bootstrap.currentip 10.77.0.14
* .* .* gvcp.bootstrap.currentsubnetmask 255.255.255.0
* .* .* gvcp.bootstrap.currentdefaultgateway 0.0.0.0
PACKED|MOVED DISCOVERY_ACK .* gvcp.bootstrap.currentdefaultgateway 0.0.0.0|10.77.0.254
MOVED DISCOVERY_ACK .* gvcp.bootstrap.currentdefaultgateway 10.77.0.254
* .* .* gvcp.bootstrap.manufacturername ZelCam
MONO .* .* gvcp.bootstrap.modelname Mono
PACKED|MOVED .* .* gvcp.bootstrap.modelname Packed
COLOUR .* .* gvcp.bootstrap.modelname Colour
BAYER .* .* gvcp.bootstrap.modelname Bayer
* .* .* gvcp.bootstrap.deviceversion 1.0.0
* .* .* gvcp.bootstrap.manufacturerspecificinfo simulated
MONO .* .* gvcp.bootstrap.serialnumber 7001
PACKED|MOVED .* .* gvcp.bootstrap.serialnumber 7002
COLOUR .* .* gvcp.bootstrap.serialnumber 7003
BAYER .* .* gvcp.bootstrap.serialnumber 7004
MONO DISCOVERY_ACK .* gvcp.bootstrap.userdefinedname Witness MONO|Eleven
MONO READMEM_ACK 1025 gvcp.bootstrap.userdefinedname Eleven
PACKED|MOVED .* .* gvcp.bootstrap.userdefinedname Witness PACKED
COLOUR .* .* gvcp.bootstrap.userdefinedname Witness COLOUR
BAYER .* .* gvcp.bootstrap.userdefinedname Witness BAYER
MONO .* .* gvcp.bootstrap.firsturl Local:Mono.xml;80000000;$(description_size MONO)
PACKED|MOVED .* .* gvcp.bootstrap.firsturl Local:Packed.xml;80000000;$(description_size PACKED)
COLOUR .* .* gvcp.bootstrap.firsturl Local:Colour.xml;80000000;$(description_size COLOUR)
BAYER .* .* gvcp.bootstrap.firsturl Local:Bayer.xml;80000000;$(description_size BAYER)
MONO READMEM_ACK 1027 gvcp.bootstrap.secondurl

# ---- Registers ----
MONO READREG_ACK .* gvcp.bootstrap.numberofnetworminterfaces 1
MONO READREG_ACK .* gvcp.bootstrap.persistentip 192.168.7.99
MONO READREG_ACK .* gvcp.bootstrap.persistentsubnetmask 255.255.0.0
MONO READREG_ACK .* gvcp.bootstrap.persistentgateway 192.168.7.1
MONO READREG_ACK .* gvcp.bootstrap.linkspeed 1000
MONO READREG_ACK .* gvcp.bootstrap.numberofmessagechannels 1
* READREG_ACK .* gvcp.bootstrap.numberofstreamchannels 1
BAYER READREG_ACK .* gvcp.bootstrap.numberofstreamchannels 2
MONO READREG_ACK .* gvcp.bootstrap.numberofactionsignals 4
MONO READREG_ACK 1011 gvcp.bootstrap.custom.register.read 0x00000910
MONO READREG_ACK 1011 gvcp.bootstrap.custom.register.read_value 0x00000001
MONO READREG_ACK .* gvcp.bootstrap.sccaps.(scspxregister|16bitblockid)supported 1
MONO READREG_ACK .* gvcp.bootstrap.sccaps.(scmbs|sceba)supported 0
MONO READREG_ACK .* gvcp.bootstrap.mccaps.mcspsupported 1
MONO READREG_ACK .* gvcp.bootstrap.mccaps.(mccfg|mcec)supported 0
* READREG_ACK .* gvcp.bootstrap.capability.* 1
* READREG_ACK .* gvcp.bootstrap.capability.(testdata|ieee1588extendedcapabilities) 0
MONO READREG_ACK 1012 gvcp.bootstrap.heartbeattimeout 6000
MONO READREG_ACK 2021 gvcp.bootstrap.heartbeattimeout 6000
* READREG_ACK .* gvcp.bootstrap.timestamptickfrequencyhigh 0
* READREG_ACK .* gvcp.bootstrap.timestamptickfrequencylow 1000000000
MONO READREG_ACK .* gvcp.bootstrap.timestampvalue(high|low) any: it bounds the times of blocks and events
PACKED READREG_ACK .* gvcp.bootstrap.timestampvalue(high|low) any: it bounds the times of blocks and events
MONO READREG_ACK .* gvcp.bootstrap.discoveryackdelay 7
MONO READREG_ACK .* gvcp.bootstrap.config.(statuscodesv.*enable|pendingackenable) 1
MONO READREG_ACK .* gvcp.bootstrap.config.(ieee1588enable|unconditional.*|heartbeatdisable) 0
MONO READREG_ACK .* gvcp.bootstrap.pending.timeout 200
MONO READREG_ACK .* gvcp.bootstrap.gvcspconfig.64bitblockidenable 0
MONO READREG_ACK .* gvcp.bootstrap.link.(dlag|slag|ml) 0,0
MONO READREG_ACK .* gvcp.bootstrap.link.sl 1,1
MONO READREG_ACK .* gvcp.bootstrap.ieee1588.clockstatus 0x00000003
MONO READREG_ACK .* gvcp.bootstrap.scheduledactioncommandqueuesize 8
* READREG_ACK .* gvcp.bootstrap.control.(switchoverkey|exclusiveaccess|switchoverenable) 0(x00000000)?
MONO READREG_ACK 1013 gvcp.bootstrap.control.switchoverenable 1
* READREG_ACK .* gvcp.bootstrap.control.controlaccess 1
MONO READREG_ACK .* gvcp.bootstrap.primaryapplicationport 20001
MONO READREG_ACK .* gvcp.bootstrap.primaryapplicationipaddress $here
MONO READREG_ACK .* gvcp.bootstrap.actiongroupkey 8
MONO READREG_ACK .* gvcp.bootstrap.actiongroupmask 0x00000003

# Of the message channel, and of streams.
MONO READREG_ACK .* gvcp.bootstrap.mcp.networkinterfaceindex 0
MONO READREG_ACK .* gvcp.bootstrap.mcp.hostport 20009
MONO READREG_ACK .* gvcp.bootstrap.mcda $here
MONO READREG_ACK .* gvcp.bootstrap.mctt 400
MONO READREG_ACK .* gvcp.bootstrap.mcrc 2
* READREG_ACK .* gvcp.bootstrap.mcsp any: events must come from there
* READREG_ACK .* gvcp.bootstrap.scpx.(direction|networkinterfaceindex) 0
MONO READREG_ACK 1015 gvcp.bootstrap.scpx.hostport 21001
* READREG_ACK .* gvcp.bootstrap.scpsx.firetestpacket 0
* READREG_ACK .* gvcp.bootstrap.scpsx.pixelendianness 0
MONO READREG_ACK 1015 gvcp.bootstrap.scpsx.donotfragment 1
MONO READREG_ACK 1015 gvcp.bootstrap.scpsx.packetsize 1500
MONO READREG_ACK .* gvcp.bootstrap.scpdx 1000
MONO READREG_ACK .* gvcp.bootstrap.scdax $here
* READREG_ACK .* gvcp.bootstrap.scspx any: packets of the channel must come from there
MONO READREG_ACK .* gvcp.bootstrap.sccx.*supported 1
MONO READREG_ACK .* gvcp.bootstrap.sccx.(ipreassembly|scmpcx|gendc|multizone)supported 0
MONO READREG_ACK .* gvcp.bootstrap.sccfgx.*enabled 0
MONO READREG_ACK .* gvcp.bootstrap.sccfgx.resenddestinationoptionenabled 1

# Memory that aravis reads: features, of which some are known here, and the description.
* READMEM_ACK .* gvcp.cmd.readmem.data any: aravis shows it as features, which are set and read above
MONO|BAYER READMEM_ACK $(register MONO Width) gvcp.cmd.readmem.data 00000140
MONO|BAYER READMEM_ACK $(register MONO Height) gvcp.cmd.readmem.data 00000064
COLOUR READMEM_ACK $(register MONO Width) gvcp.cmd.readmem.data 00000140
COLOUR READMEM_ACK $(register MONO Height) gvcp.cmd.readmem.data 000000f0

# ---- FORCEIP: from the new address, to all where the command allows it ----
MOVED FORCEIP_ACK 8001 messages 1
PACKED FORCEIP_ACK 8002 messages 1
PACKED FORCEIP_ACK 8002 ip.dst 255.255.255.255

# ---- Events ----
* EVENT.* .* ip.flags.df any: messages of control are never fragmented
MONO EVENT.* .* udp.srcport $mcsp
PACKED EVENT.* .* udp.srcport $packed_mcsp
* EVENT.* .* gvcp.message_key_code 0x42
* EVENT.* .* udp.length =length
* EVENT_CMD .* gvcp.cmd.payloadlength 0x0010
* EVENTDATA_CMD .* gvcp.cmd.payloadlength 0x0018
MONO EVENT_CMD 0008 gvcp.cmd.payloadlength 0x0018
MONO EVENTDATA_CMD 000[9a] gvcp.cmd.payloadlength 0x0020
* EVENT.* .* gvcp.cmd.req_id =which
* EVENT_CMD .* gvcp.cmd.command 0x00c0
* EVENTDATA_CMD .* gvcp.cmd.command 0x00c2
* EVENT.* .* messages 1
MONO EVENT_CMD 0001 messages 3
* EVENT.* .* gvcp.cmd.flags 0x00
* EVENT.* .* gvcp.cmd.flag.64bitid 0
* EVENT.* .* gvcp.cmd.flag.acq_required 0
MONO EVENT.* 000[127] gvcp.cmd.flags 0x01
MONO EVENT.* 000[127] gvcp.cmd.flag.acq_required 1
MONO EVENT.* 000[89a] gvcp.cmd.flags 0x10
MONO EVENT.* 000[89a] gvcp.cmd.flag.64bitid 1
MONO EVENT_CMD .* gvcp.cmd.event.devicespecificid 0x9fff
MONO EVENTDATA_CMD .* gvcp.cmd.event.devicespecificid 0x9022
PACKED EVENT_CMD .* gvcp.cmd.event.id 0x0009
* EVENT.* .* gvcp.cmd.event.streamchannelindex 0xffff
* EVENT.* .* gvcp.cmd.event.blockid 0x0000
MONO EVENTDATA_CMD 000[47] gvcp.cmd.eventdata.data 0000000000000000
MONO EVENTDATA_CMD 0005 gvcp.cmd.eventdata.data 0000000000000001
MONO EVENTDATA_CMD 0006 gvcp.cmd.eventdata.data 0000000000000002
MONO EVENTDATA_CMD 000[9a] gvcp.cmd.eventdata.data 0000000000000000
MONO EVENTDATA_CMD 000[9a] gvcp.cmd.event.eventsize 0x0020
# tshark calls the block id of 64 bits so.
MONO EVENT.* 000[89a] gvcp.event_timestamp 0x0000000000000000
MONO EVENT.* .* gvcp.cmd.event.timestamp 0x$begun..0x$ended
PACKED EVENT.* .* gvcp.cmd.event.timestamp 0x$scheduled..0x7fffffffffffffff
END
    right_streams
}
