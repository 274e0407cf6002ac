# shellcheck shell=bash
# What zelcam must make of a camera with each switch. A row: the switch and its value, further switches or "-",
# features that are set before frames are grabbed or "-", what must come, and a pattern that must be in what the
# programs print of it, or nothing.
#
# What comes: of each frame "whole" the bytes that the same camera gives without a network, or these "swapped" in
# pairs, or "half" of them in every other frame; "some" frames lack packets and say so. A camera that is "closed"
# cannot be opened, and a "dumb" one has no features, for the reason in the pattern.

switch_table() {
    cat <<'END'
# ---- Who and where it is ----
Address=10.77.0.20 - - whole  10\.77\.0\.20\b
Mask=255.255.0.0 - - whole
Gateway=10.77.0.254 - - whole GevCurrentDefaultGateway .* 10\.77\.0\.254
Mac=02:57:53:01:00:77 - - whole 02:?57:?53:?01:?00:?77
Version=1.2 - - whole
Version=2.0 - - whole
EmptySerial=true - - whole
OddStrings=true - - whole
IgnoreLimitedBroadcast=true - - whole
IgnoreDirectedBroadcast=true - - whole
DiscoveryDelayMs=500 - - whole
BootMs=300 - - whole

# ---- What it cannot do ----
GvcpCapabilitiesOff=0xffffffff - - whole
GvspCapabilitiesOff=0xffffffff - - whole
MessageCapabilitiesOff=0xffffffff - - whole
StreamCapabilitiesOff=0xffffffff - - whole

# ---- Commands ----
DropAckEvery=30 - - whole
DelayAckMs=30 - - whole
DoubleAckEvery=1 - - whole
WrongAckIdEvery=30 - - whole
LateAckAfterSlow=true PendingAckMs=20 - whole
PendingAckMs=50 - - whole
ErrorAddress=0x934 ErrorStatus=0x8003 - whole GevSupportedOption cannot be read
ErrorAddress=0xd08 - - whole GevSCPD cannot be read
ErrorStatus=0x8006 ErrorAddress=0xa00 - closed GevCCP cannot be read
ZeroLengthErrors=true - - whole
BadAlignmentOnce=true - - whole
RefuseOddReads=false - - whole
RefuseReadMem=true - - whole
HeartbeatSilence=true - - closed answer
LongestHeartbeatMs=600 - - whole GevHeartbeatTimeout .*\b600\b

# ---- The description and the clock ----
UrlForm=plain - - whole
UrlForm=slashes - - whole
UrlForm=spaces - - whole
UrlForm=hex-prefix - - whole
UrlForm=schema - - whole
UrlForm=lower-case - - whole
UrlForm=ZIP - - whole
UrlForm=http - - dumb it has no features
UrlForm=file - - dumb it has no features
SecondUrlOnly=true - - whole
Zip=true - - whole
TickFrequencyZero=true - - whole
TickFrequencyLowOnly=true - - whole
TickFrequencyHighOnly=true - - whole

# ---- Packets that do not come, or not in order ----
LossRate=0.02 - - whole resent=[1-9]
LossEvery=50 - - whole resent=[1-9]
LossBurst=50 LossEvery=1000 - whole resent=[1-9]
LossSeed=7 LossRate=0.02 - whole resent=[1-9]
LoseResent=false LossRate=0.05 - whole resent=[1-9]
LoseLeaders=3 - - whole resent=[1-9]
LoseTrailers=3 - - whole resent=[1-9]
LoseTails=3 - - whole resent=[1-9]
LoseBlocks=4 - - whole resent=[1-9]
Reorder=16 - - whole
DuplicateEvery=3 - - whole
LateBlocks=3 - - whole
WrongStatusEvery=100 - - whole resent=[1-9]
WrongBlockIdEvery=100 - - whole resent=[1-9]
ResendMemoryBlocks=2 LossEvery=100 - whole resent=[1-9]
ResendLimitPerSecond=10 LossEvery=50 - some
ResendTwice=true LossEvery=50 - whole resent=[1-9]
ResendWrongId=true LossEvery=500 - some
ResendStatusZero=true LossEvery=50 - whole resent=[1-9]
NoResend=true LossEvery=500 - some

# ---- Sizes of packets ----
PathMtu=1000 - - whole
PathMtu=4000 OwnPacketSize=8192 - whole
PacketSizeRounding=16 - - whole
RefuseUnalignedPacketSize=true PacketSizeRounding=16 - whole
IgnoreDontFragment=true - - whole
FirstTestPacketsLost=2 - - whole
TestPacketDelayMs=200 - - whole
OwnPacketSize=576 - - whole
OwnPacketSize=9000 - - whole
OwnPacketSize=16000 - - whole

# ---- Blocks ----
FirstBlockId=65530 - - whole
ExtendedIdsOn=true - - whole
LeaderAtStart=true - - whole
PaddedLastPacket=true - - whole
VariableHeight=true - - half
BigEndianPixels=true - PixelFormat=Mono16 swapped
PayloadType4=true - ChunkModeActive=true whole Image +640 x 480 Mono8
PayloadType5=true - ChunkModeActive=true whole
PartRelativeOffsets=true - ChunkModeActive=true,GevSCCFGMultiPart=true whole
TimestampsAbove63Bits=true - - whole timestamp: [0-9]{19}
Segmentation=true - - whole
ScspZero=true - - whole
NeedsPortZero=true - - whole
END
}
