#ifndef I_DEVICE_STATUS_DATA_RETRIEVE_H
#define I_DEVICE_STATUS_DATA_RETRIEVE_H

// Switches of the product's customizations.
class IDeviceStatusDataRetrieve {
public:
    virtual ~IDeviceStatusDataRetrieve() {}
    virtual bool useChineseContentsProvider() { return false; }
    virtual bool useCustomizedRecognitionMode() { return false; }
    virtual bool useCustomizedNluParams() { return false; }
    virtual bool useCustomizedDriverResponse() { return false; }
};

#endif
