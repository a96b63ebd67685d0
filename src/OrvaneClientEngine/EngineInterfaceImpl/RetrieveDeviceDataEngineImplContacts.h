#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_CONTACTS_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_CONTACTS_H

#include <asr-nlu/IEngineRetrieveDeviceContactsData.h>

#include <string>

// The contacts facet: the appliance supports contacts.
class RetrieveDeviceDataEngineImplContacts : public IEngineRetrieveDeviceContactsData {
public:
    RetrieveDeviceDataEngineImplContacts();
    ~RetrieveDeviceDataEngineImplContacts() override;

    std::string isContactsSupported() override;
};

#endif
