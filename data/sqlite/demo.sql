-- The demonstration: rows for a database that schema.sql made. The well-known ports and the row of
-- this computer in FlowEngines are added where the demonstration is laid out.

-- Ports that the administrator added.
INSERT INTO ServicePorts (Port, ServiceName, System, Enabled) VALUES
  (2055, 'netflow', 0, 1),
  (8443, 'intranet-portal', 0, 1),
  (48100, 'door-controllers', 0, 0);

-- Ranges overlap, also with equal sizes (6 and 7), but none contains another.
INSERT INTO IPAddressGroups
  (IPAddressGroupID, IPRangeStart, IPRangeEnd, IPAddressGroupName, System, Enabled) VALUES
  (1,   10000000000,  10127255255, 'Private network 10, lower half', 1, 1),
  (2,   10128000000,  10255255255, 'Private network 10, upper half', 1, 1),
  (3,  172016000000, 172031255255, 'Private network 172.16', 1, 1),
  (4,  192168000000, 192168127255, 'Private network 192.168, lower half', 1, 1),
  (5,  192168128000, 192168255255, 'Private network 192.168, upper half', 1, 1),
  (6,   10124000000,  10131255255, 'Headquarters campus', 0, 1),
  (7,   10126000000,  10133255255, 'Server halls', 0, 1),
  (8,  192168120000, 192168135255, 'Guest wireless', 0, 1),
  (9,  192168126000, 192168137255, 'Former laboratory', 0, 0),
  (10, 198051100000, 198051100255, 'Partner extranet', 0, 1),
  (11, 203000113000, 203000113191, 'Web shop', 0, 1),
  (12, 203000113128, 203000113255, 'Perimeter services', 0, 1);

INSERT INTO Nodes (NodeID, Caption) VALUES
  (1, 'core-north'), (2, 'core-south'),
  (3, 'edge-carrier-a'), (4, 'edge-carrier-b'),
  (5, 'dist-campus-1'), (6, 'dist-campus-2'), (7, 'dist-servers'),
  (8, 'access-floor-1'), (9, 'access-floor-2'), (10, 'access-floor-3'), (11, 'access-workshop'),
  (12, 'access-perimeter');

WITH RECURSIVE Slots(Slot) AS (SELECT 1 UNION ALL SELECT Slot + 1 FROM Slots WHERE Slot < 24)
INSERT INTO Interfaces (InterfaceID, NodeID, Caption)
SELECT
  NodeID * 100 + Slot,
  NodeID,
  CASE WHEN Caption LIKE 'access-%' AND Slot > 2 THEN 'FastEthernet0/' ELSE 'GigabitEthernet0/' END
  || Slot || ' · ' ||
  CASE
    WHEN Slot = 24 THEN 'Out-of-band management'
    WHEN Slot > 20 THEN 'Spare'
    WHEN Caption LIKE 'core-%' THEN
      CASE
        WHEN Slot <= 2 THEN 'Link ' || Slot || ' to the other core'
        WHEN Slot <= 4 THEN 'Link to edge-carrier-' || char(94 + Slot)
        WHEN Slot <= 6 THEN 'Link to dist-campus-' || (Slot - 4)
        WHEN Slot <= 8 THEN 'Link ' || (Slot - 6) || ' to dist-servers'
        ELSE 'Backbone segment ' || (Slot - 8)
      END
    WHEN Caption LIKE 'edge-%' THEN
      CASE
        WHEN Slot <= 2 THEN 'Uplink to core-' || CASE Slot WHEN 1 THEN 'north' ELSE 'south' END
        WHEN Slot <= 4 THEN 'Internet line ' || (Slot - 2)
        WHEN Slot <= 6 THEN 'Partner extranet line ' || (Slot - 4)
        ELSE 'Branch office ' || printf('%02d', Slot - 6)
      END
    WHEN Slot <= 2 THEN 'Uplink to core'
      || CASE Slot WHEN 2 THEN ' (standby)' ELSE '' END
    WHEN Caption = 'dist-servers' THEN 'Server rack ' || printf('%02d', Slot - 2)
    WHEN Caption = 'access-perimeter' THEN 'Public server ' || printf('%02d', Slot - 2)
    WHEN Caption LIKE 'dist-%' THEN 'Building ' || printf('%02d', Slot - 2)
    WHEN Slot > 18 THEN 'Wireless access point ' || (Slot - 18)
    ELSE 'Outlet ' || printf('%02d', Slot - 2)
  END
FROM Nodes, Slots;

-- Every uplink, and all lines that leave the core and edge nodes: 40 sources.
INSERT INTO NetFlowSources (InterfaceID)
SELECT i.InterfaceID
FROM Interfaces i INNER JOIN Nodes n ON n.NodeID = i.NodeID
WHERE i.InterfaceID % 100 <= CASE
  WHEN n.Caption LIKE 'core-%' OR n.Caption LIKE 'edge-%' THEN 6 ELSE 2 END;

-- Stretches of addresses, given by their first one as an ordinary 32-bit number, in which Endpoints
-- addresses lie about Stride apart; the shift makes their last parts look less regular.
WITH RECURSIVE
  Stretches(First, Endpoints, Stride, Label, Domain) AS (VALUES
    (167772161,  3000, 2621, 'site',  'plants.example.net'),    -- 10.0.0.1
    (175636481,  5000,  235, 'pc',    'campus.example.net'),    -- 10.120.0.1
    (176816129,  2500, 3093, 'site',  'stores.example.net'),    -- 10.138.0.1
    (2886729729, 2500,  419, 'srv',   'lab.example.net'),       -- 172.16.0.1
    (3232235521, 2000,   14, 'dev',   'office.example.net'),    -- 192.168.0.1
    (3232264192, 2000,    4, 'guest', 'wireless.example.net'),  -- 192.168.112.0
    (3232272385, 1000,   28, 'dev',   'workshop.example.net'),  -- 192.168.144.1
    (3325256705,  250,    1, 'gw',    'partner.example.com'),   -- 198.51.100.1
    (3405803777,  250,    1, 'www',   'shop.example.com'),      -- 203.0.113.1
    (1681915905, 1000, 4193, 'dyn',   'access.example.org'),    -- 100.64.0.1
    (3323068417,  500,  261, 'host',  'hosting.example.org')    -- 198.18.0.1
  ),
  Numbers(N) AS (SELECT 0 UNION ALL SELECT N + 1 FROM Numbers WHERE N < 4999),
  Addresses(Address, N, Label, Domain) AS (
    SELECT First + N * Stride + N * 7919 % Stride, N, Label, Domain
    FROM Stretches, Numbers WHERE N < Endpoints
  ),
  Parts(A, B, C, D, N, Label, Domain) AS (
    SELECT Address >> 24, Address >> 16 & 255, Address >> 8 & 255, Address & 255, N, Label, Domain
    FROM Addresses
  )
INSERT INTO FlowCorrelation (IPAddress, IPAddressSort, FullHostname)
SELECT
  printf('%d.%d.%d.%d', A, B, C, D),
  A * 1000000000 + B * 1000000 + C * 1000 + D,
  CASE WHEN N % 9 <> 4 THEN printf('%s-%04d.%s', Label, N + 1, Domain) END
FROM Parts;

-- Of the enabled groups around an address the smallest wins, among equals the one added last.
WITH Sizes AS (
  SELECT
    IPAddressGroupID, IPRangeStart, IPRangeEnd,
    (IPRangeEnd / 1000000000 - IPRangeStart / 1000000000) * 16777216
    + (IPRangeEnd / 1000000 % 1000 - IPRangeStart / 1000000 % 1000) * 65536
    + (IPRangeEnd / 1000 % 1000 - IPRangeStart / 1000 % 1000) * 256
    + (IPRangeEnd % 1000 - IPRangeStart % 1000) + 1 AS Size
  FROM IPAddressGroups WHERE Enabled = 1
)
UPDATE FlowCorrelation SET IPAddressGroupID = coalesce((
  SELECT s.IPAddressGroupID FROM Sizes s
  WHERE FlowCorrelation.IPAddressSort BETWEEN s.IPRangeStart AND s.IPRangeEnd
  ORDER BY s.Size, s.IPAddressGroupID DESC LIMIT 1), 0);
