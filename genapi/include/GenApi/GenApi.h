// The whole node-map interface.
#ifndef GENAPI_GENAPI_H
#define GENAPI_GENAPI_H

#include <Base/GCBase.h>
#include <GenApi/Autovector.h>
#include <GenApi/Container.h>
#include <GenApi/GenApiLinkage.h>
#include <GenApi/GenApiVersion.h>
#include <GenApi/IBase.h>
#include <GenApi/IBoolean.h>
#include <GenApi/ICategory.h>
#include <GenApi/IChunkPort.h>
#include <GenApi/ICommand.h>
#include <GenApi/IDestroy.h>
#include <GenApi/IDeviceInfo.h>
#include <GenApi/IEnumEntry.h>
#include <GenApi/IEnumeration.h>
#include <GenApi/IEnumerationT.h>
#include <GenApi/IFloat.h>
#include <GenApi/IInteger.h>
#include <GenApi/INode.h>
#include <GenApi/INodeMap.h>
#include <GenApi/IPort.h>
#include <GenApi/IPortConstruct.h>
#include <GenApi/IPortRecorder.h>
#include <GenApi/IPortStacked.h>
#include <GenApi/IRegister.h>
#include <GenApi/ISelector.h>
#include <GenApi/ISelectorDigit.h>
#include <GenApi/IString.h>
#include <GenApi/IUserData.h>
#include <GenApi/IValue.h>
#include <GenApi/NodeCallback.h>
#include <GenApi/NodeMapFactory.h>
#include <GenApi/NodeMapRef.h>
#include <GenApi/Persistence.h>
#include <GenApi/Pointer.h>
#include <GenApi/Reference.h>
#include <GenApi/SelectorSet.h>
#include <GenApi/StructPort.h>
#include <GenApi/Synch.h>
#include <GenApi/Types.h>

#endif  // GENAPI_GENAPI_H
