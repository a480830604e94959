// Result and type codes of the host's result buffers.
#pragma once

// Status of host services.
constexpr int RTNORM = 5100;   // normal result
constexpr int RTERROR = -5001; // failure
constexpr int RTCAN = -5002;
constexpr int RTREJ = -5003;
constexpr int RTFAIL = -5004;

// Value types of a resbuf.
constexpr short RTNONE = 5000; // end of a list
constexpr short RTREAL = 5001;
constexpr short RTPOINT = 5002; // 2D point
constexpr short RTSHORT = 5003;
constexpr short RTANG = 5004;
constexpr short RTSTR = 5005;
constexpr short RTENAME = 5006;
constexpr short RTPICKS = 5007;
constexpr short RTORINT = 5008;
constexpr short RT3DPOINT = 5009;
constexpr short RTLONG = 5010;
constexpr short RTVOID = 5014;
constexpr short RTLB = 5016;
constexpr short RTLE = 5017;
constexpr short RTDOTE = 5018;
constexpr short RTNIL = 5019;
constexpr short RTDXF0 = 5020;
constexpr short RTT = 5021;
