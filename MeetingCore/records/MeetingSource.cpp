#include "MeetingCore/records/MeetingSource.h"

namespace varnet {

std::string MeetingSource::key() const {
    return provider + '|' + accountID + '|' + containerID + '|' + recordID;
}

} // namespace varnet
