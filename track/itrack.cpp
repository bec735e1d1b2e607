#include "track/itrack.h"

ITrack::~ITrack() = default;

const std::string& ITrack::GetName() { return m_strName; }
