// The exported functions of the library, of ports and of events.

#include <cstring>

#include "producers/server/events/event.h"
#include "producers/server/exports/call.h"
#include "producers/server/modules/module.h"

using ZelCti::Answer;
using ZelCti::Call;
using ZelCti::CallAnyTime;
using ZelCti::Error;
using ZelCti::Find;
using ZelCti::Function;
using ZelCti::LastError;
using ZelCti::Library;
using ZelCti::Module;
using ZelCti::PortUrl;
using ZelCti::Require;

namespace GenTL {

namespace {

// Reads or writes the entries one after the other; the number done is reported also upon a failure.
template <typename Access>
void ForEachEntry(PORT_REGISTER_STACK_ENTRY* entries, size_t* numEntries, Access&& access) {
    Require(entries);
    Require(numEntries);
    const size_t count = *numEntries;
    for (*numEntries = 0; *numEntries < count; ++*numEntries) {
        const PORT_REGISTER_STACK_ENTRY entry = entries[*numEntries];
        Require(entry.pBuffer);
        access(entry);
    }
}

}  // namespace

extern "C" {

GC_ERROR GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return CallAnyTime(Function::GCGetInfo, answer, [&] { Library::GetInfo(answer); });
}

GC_ERROR GCGetLastError(GC_ERROR* piErrorCode, char* sErrText, size_t* piSize) {
    Answer answer(sErrText, piSize);
    return CallAnyTime(Function::GCGetLastError, answer, [&] {
        Require(piErrorCode);
        const LastError last = LastError::OfThread();
        *piErrorCode = last.code;
        answer.String(last.text);
    });
}

GC_ERROR GCInitLib() {
    return CallAnyTime(Function::GCInitLib, {}, [] { Library::Instance().Init(); });
}

GC_ERROR GCCloseLib() {
    return Call(Function::GCCloseLib, {}, [] { Library::Instance().Close(); });
}

GC_ERROR GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void* pBuffer, size_t* piSize) {
    return Call(Function::GCReadPort, Answer(pBuffer, piSize), [&] {
        const auto module = Find<Module>(hPort);
        Require(pBuffer);
        Require(piSize);
        module->ReadPort(iAddress, pBuffer, *piSize);
    });
}

GC_ERROR GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void* pBuffer, size_t* piSize) {
    return Call(Function::GCWritePort, {}, [&] {
        const auto module = Find<Module>(hPort);
        Require(pBuffer);
        Require(piSize);
        module->WritePort(iAddress, pBuffer, *piSize);
    });
}

GC_ERROR GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                           size_t* piNumEntries) {
    return Call(Function::GCReadPortStacked, {}, [&] {
        const auto module = Find<Module>(hPort);
        ForEachEntry(pEntries, piNumEntries, [&](const PORT_REGISTER_STACK_ENTRY& entry) {
            module->ReadPort(entry.Address, entry.pBuffer, entry.Size);
        });
    });
}

GC_ERROR GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY* pEntries,
                            size_t* piNumEntries) {
    return Call(Function::GCWritePortStacked, {}, [&] {
        const auto module = Find<Module>(hPort);
        ForEachEntry(pEntries, piNumEntries, [&](const PORT_REGISTER_STACK_ENTRY& entry) {
            module->WritePort(entry.Address, entry.pBuffer, entry.Size);
        });
    });
}

GC_ERROR GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                       void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::GCGetPortInfo, answer, [&] { Find<Module>(hPort)->GetPortInfo(answer); });
}

// The texts of all URLs, one after the other; a zero more ends the list.
GC_ERROR GCGetPortURL(PORT_HANDLE hPort, char* sURL, size_t* piSize) {
    Answer answer(sURL, piSize);
    return Call(Function::GCGetPortURL, answer, [&] {
        const auto module = Find<Module>(hPort);
        std::string list;
        for (const PortUrl& url : module->Urls())
            list += url.Text() + '\0';
        if (list.empty()) throw Error(GC_ERR_NOT_AVAILABLE, "the module has no description");
        answer.String(list);
    });
}

GC_ERROR GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t* piNumURLs) {
    Answer answer = Answer::Fixed(piNumURLs);
    return Call(Function::GCGetNumPortURLs, answer,
                [&] { answer.Set(static_cast<uint32_t>(Find<Module>(hPort)->Urls().size())); });
}

GC_ERROR GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd,
                          INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::GCGetPortURLInfo, answer, [&] {
        const auto module = Find<Module>(hPort);
        const std::vector<PortUrl> urls = module->Urls();
        if (iURLIndex >= urls.size()) {
            throw Error(GC_ERR_INVALID_INDEX, "no description " + std::to_string(iURLIndex));
        }
        urls[iURLIndex].GetInfo(answer);
    });
}

GC_ERROR GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID, EVENT_HANDLE* phEvent) {
    Answer answer = Answer::Fixed(phEvent);
    return Call(Function::GCRegisterEvent, answer, [&] {
        const auto module = Find<Module>(hEventSrc);
        Require(phEvent);
        answer.Set(Module::RegisterEvent(module, iEventID));
    });
}

GC_ERROR GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID) {
    return Call(Function::GCUnregisterEvent, {},
                [&] { Find<Module>(hEventSrc)->UnregisterEvent(iEventID); });
}

GC_ERROR EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* piSize, uint64_t iTimeout) {
    const Answer answer(pBuffer, piSize);
    return Call(Function::EventGetData, answer, [&] {
        const auto event = Find<ZelCti::Event>(hEvent);
        Require(piSize);
        event->GetData(answer, iTimeout);
    });
}

GC_ERROR EventGetDataInfo(EVENT_HANDLE hEvent, const void* pInBuffer, size_t iInSize,
                          EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pOutBuffer,
                          size_t* piOutSize) {
    const Answer answer(iInfoCmd, piType, pOutBuffer, piOutSize);
    return Call(Function::EventGetDataInfo, answer, [&] {
        const auto event = Find<ZelCti::Event>(hEvent);
        Require(pInBuffer);
        event->GetDataInfo({pInBuffer, iInSize}, answer);
    });
}

GC_ERROR EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                      void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::EventGetInfo, answer,
                [&] { Find<ZelCti::Event>(hEvent)->GetInfo(answer); });
}

GC_ERROR EventFlush(EVENT_HANDLE hEvent) {
    return Call(Function::EventFlush, {}, [&] { Find<ZelCti::Event>(hEvent)->Flush(); });
}

GC_ERROR EventKill(EVENT_HANDLE hEvent) {
    return Call(Function::EventKill, {}, [&] { Find<ZelCti::Event>(hEvent)->Kill(); });
}

}  // extern "C"

}  // namespace GenTL
