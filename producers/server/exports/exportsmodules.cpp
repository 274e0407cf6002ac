// The exported functions of systems, interfaces and devices.

#include "producers/server/base/waitpoint.h"
#include "producers/server/exports/call.h"
#include "producers/server/modules/device.h"
#include "producers/server/modules/infos.h"
#include "producers/server/modules/interface.h"
#include "producers/server/modules/system.h"

using ZelCti::Answer;
using ZelCti::Call;
using ZelCti::Device;
using ZelCti::Find;
using ZelCti::Function;
using ZelCti::Interface;
using ZelCti::Library;
using ZelCti::Require;
using ZelCti::System;
using ZelCti::WaitPoint;

namespace GenTL {

namespace {

template <typename T>
void Close(void* handle) {
    Find<T>(handle);
    Library::Instance().Handles().Close(handle);
}

}  // namespace

extern "C" {

GC_ERROR TLOpen(TL_HANDLE* phTL) {
    Answer answer = Answer::Fixed(phTL);
    return Call(Function::TLOpen, answer, [&] {
        Require(phTL);
        const auto system = std::make_shared<System>(Library::Instance().Transports());
        answer.Set(Library::Instance().Handles().Open(system, nullptr));
    });
}

GC_ERROR TLClose(TL_HANDLE hTL) {
    return Call(Function::TLClose, {}, [&] { Close<System>(hTL); });
}

GC_ERROR TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                   size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::TLGetInfo, answer, [&] {
        Find<System>(hTL);
        Library::GetInfo(answer);
    });
}

GC_ERROR TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* piNumIfaces) {
    Answer answer = Answer::Fixed(piNumIfaces);
    return Call(Function::TLGetNumInterfaces, answer,
                [&] { answer.Set(Find<System>(hTL)->Interfaces().Count()); });
}

GC_ERROR TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char* sID, size_t* piSize) {
    Answer answer(sID, piSize);
    return Call(Function::TLGetInterfaceID, answer,
                [&] { answer.String(Find<System>(hTL)->Interfaces().At(iIndex)->Id()); });
}

GC_ERROR TLGetInterfaceInfo(TL_HANDLE hTL, const char* sIfaceID, INTERFACE_INFO_CMD iInfoCmd,
                            INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::TLGetInterfaceInfo, answer, [&] {
        ZelCti::AnswerInfo(*Find<System>(hTL)->Interfaces().Find(sIfaceID), answer);
    });
}

GC_ERROR TLOpenInterface(TL_HANDLE hTL, const char* sIfaceID, IF_HANDLE* phIface) {
    Answer answer = Answer::Fixed(phIface);
    return Call(Function::TLOpenInterface, answer, [&] {
        const auto system = Find<System>(hTL);
        Require(phIface);
        answer.Set(System::OpenInterface(system, sIfaceID));
    });
}

GC_ERROR TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pbChanged, uint64_t iTimeout) {
    Answer answer = Answer::Fixed(pbChanged);
    return Call(Function::TLUpdateInterfaceList, answer, [&] {
        const bool8_t changed = Find<System>(hTL)->UpdateInterfaces(WaitPoint::After(iTimeout));
        if (pbChanged != nullptr) answer.Set(changed);
    });
}

GC_ERROR IFClose(IF_HANDLE hIface) {
    return Call(Function::IFClose, {}, [&] { Close<Interface>(hIface); });
}

GC_ERROR IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                   void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::IFGetInfo, answer, [&] { Find<Interface>(hIface)->GetInfo(answer); });
}

GC_ERROR IFGetNumDevices(IF_HANDLE hIface, uint32_t* piNumDevices) {
    Answer answer = Answer::Fixed(piNumDevices);
    return Call(Function::IFGetNumDevices, answer,
                [&] { answer.Set(Find<Interface>(hIface)->Cameras().Count()); });
}

GC_ERROR IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char* sIDeviceID, size_t* piSize) {
    Answer answer(sIDeviceID, piSize);
    return Call(Function::IFGetDeviceID, answer,
                [&] { answer.String(Find<Interface>(hIface)->Cameras().At(iIndex)->Id()); });
}

GC_ERROR IFUpdateDeviceList(IF_HANDLE hIface, bool8_t* pbChanged, uint64_t iTimeout) {
    Answer answer = Answer::Fixed(pbChanged);
    return Call(Function::IFUpdateDeviceList, answer, [&] {
        const bool8_t changed = Find<Interface>(hIface)->UpdateCameras(WaitPoint::After(iTimeout));
        if (pbChanged != nullptr) answer.Set(changed);
    });
}

GC_ERROR IFGetDeviceInfo(IF_HANDLE hIface, const char* sDeviceID, DEVICE_INFO_CMD iInfoCmd,
                         INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::IFGetDeviceInfo, answer,
                [&] { Find<Interface>(hIface)->GetDeviceInfo(sDeviceID, answer); });
}

GC_ERROR IFOpenDevice(IF_HANDLE hIface, const char* sDeviceID, DEVICE_ACCESS_FLAGS iOpenFlag,
                      DEV_HANDLE* phDevice) {
    Answer answer = Answer::Fixed(phDevice);
    return Call(Function::IFOpenDevice, answer, [&] {
        const auto interface = Find<Interface>(hIface);
        Require(phDevice);
        answer.Set(Interface::OpenDevice(interface, sDeviceID, iOpenFlag));
    });
}

GC_ERROR IFGetParentTL(IF_HANDLE hIface, TL_HANDLE* phSystem) {
    Answer answer = Answer::Fixed(phSystem);
    return Call(Function::IFGetParentTL, answer,
                [&] { answer.Set(Find<Interface>(hIface)->ParentHandle()); });
}

GC_ERROR DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemoteDevice) {
    Answer answer = Answer::Fixed(phRemoteDevice);
    return Call(Function::DevGetPort, answer, [&] {
        const auto device = Find<Device>(hDevice);
        Require(phRemoteDevice);
        answer.Set(Device::OpenRemote(device));
    });
}

GC_ERROR DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* piNumDataStreams) {
    Answer answer = Answer::Fixed(piNumDataStreams);
    return Call(Function::DevGetNumDataStreams, answer,
                [&] { answer.Set(Find<Device>(hDevice)->NumStreams()); });
}

GC_ERROR DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char* sDataStreamID,
                            size_t* piSize) {
    Answer answer(sDataStreamID, piSize);
    return Call(Function::DevGetDataStreamID, answer,
                [&] { answer.String(Find<Device>(hDevice)->StreamId(iIndex)); });
}

GC_ERROR DevOpenDataStream(DEV_HANDLE hDevice, const char* sDataStreamID, DS_HANDLE* phDataStream) {
    Answer answer = Answer::Fixed(phDataStream);
    return Call(Function::DevOpenDataStream, answer, [&] {
        const auto device = Find<Device>(hDevice);
        Require(phDataStream);
        answer.Set(Device::OpenStream(device, sDataStreamID));
    });
}

GC_ERROR DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                    void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::DevGetInfo, answer, [&] { Find<Device>(hDevice)->GetInfo(answer); });
}

GC_ERROR DevClose(DEV_HANDLE hDevice) {
    return Call(Function::DevClose, {}, [&] { Close<Device>(hDevice); });
}

GC_ERROR DevGetParentIF(DEV_HANDLE hDevice, IF_HANDLE* phIface) {
    Answer answer = Answer::Fixed(phIface);
    return Call(Function::DevGetParentIF, answer,
                [&] { answer.Set(Find<Device>(hDevice)->ParentHandle()); });
}

}  // extern "C"

}  // namespace GenTL
