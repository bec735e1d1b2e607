// What both directions of the exchange share: the records that one object holds.
#include "gpx/gpx.h"

#include <rapidxml/rapidxml.hpp>

CGPXTransmit::CGPXTransmit() : m_metadata{}, m_iSourceEncoding(0), m_pTrackInfo(nullptr), m_szUtf8{} {}

CGPXTransmit::~CGPXTransmit() = default;

void CGPXTransmit::SetMetadata(const GpxMetadata* md) { m_metadata = *md; }

void CGPXTransmit::SetTrackInfo(GpxTrackInfo* info) { m_pTrackInfo = info; }
