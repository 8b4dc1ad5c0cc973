-- Rows for a demonstration, for the empty tables of schema.sql in the same folder. One batch.

set nocount on;
set xact_abort on;

if exists (select * from ServicePorts) or exists (select * from IPAddressGroups)
   or exists (select * from FlowCorrelation) or exists (select * from Nodes)
begin
  raiserror('The demonstration rows are for empty tables; these hold rows already.', 16, 1);
  return;
end;

begin transaction;

insert into ServicePorts (Port, ServiceName, System, Enabled) values
  (20, N'ftp-data', 1, 1), (21, N'ftp', 1, 1), (22, N'ssh', 1, 1), (23, N'telnet', 1, 0),
  (25, N'smtp', 1, 1), (53, N'domain', 1, 1), (69, N'tftp', 1, 0), (80, N'http', 1, 1),
  (110, N'pop3', 1, 1), (123, N'ntp', 1, 1), (135, N'epmap', 1, 1), (143, N'imap', 1, 1),
  (161, N'snmp', 1, 1), (162, N'snmptrap', 1, 1), (179, N'bgp', 1, 1), (389, N'ldap', 1, 1),
  (443, N'https', 1, 1), (445, N'microsoft-ds', 1, 1), (514, N'syslog', 1, 1),
  (636, N'ldaps', 1, 1), (993, N'imaps', 1, 1), (1433, N'ms-sql-s', 1, 1),
  (3389, N'ms-wbt-server', 1, 1), (5060, N'sip', 1, 1), (8088, N'Intranet', 0, 1);

-- Neighbours within 10.0 and within 172.16 overlap; none lies within another.
insert into IPAddressGroups (IPRangeStart, IPRangeEnd, IPAddressGroupName, System, Enabled) values
  (10000000000, 10000127255, N'Head office', 1, 1),
  (10000096000, 10000159255, N'Laboratories', 0, 1),
  (10000150000, 10000255255, N'Warehouse', 0, 0),
  (172016000000, 172016031255, N'Branch Z' + nchar(252) + N'rich', 0, 1),
  (172016030000, 172016063255, N'Branch Gen' + nchar(232) + N've', 0, 1),
  (192168000000, 192168255255, N'Private network', 1, 1);

-- 12 devices of 24 interfaces each; the first four of every device send NetFlow.
with Digits (n) as (
  select n from (values (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)) as d (n)
), Numbers (n) as (
  select tens.n * 10 + ones.n from Digits as tens cross join Digits as ones
)
insert into Nodes (NodeID, Caption)
select n, N'router-' + right(N'0' + cast(n as nvarchar(9)), 2) + N'.example.net'
from Numbers where n between 1 and 12;

with Digits (n) as (
  select n from (values (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)) as d (n)
), Numbers (n) as (
  select tens.n * 10 + ones.n from Digits as tens cross join Digits as ones
)
insert into Interfaces (InterfaceID, NodeID, Caption)
select (Nodes.NodeID - 1) * 24 + n, Nodes.NodeID,
       N'GigabitEthernet0/' + cast(n as nvarchar(9)) +
         case when n <= 2 then N' (uplink)' else N'' end
from Nodes cross join Numbers where n between 1 and 24;

insert into NetFlowSources (InterfaceID)
select InterfaceID from Interfaces where (InterfaceID - 1) % 24 < 4;

-- Endpoints all over the groups and outside of them.
with Digits (n) as (
  select n from (values (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)) as d (n)
), Networks (a, b) as (
  select a, b from (values (10, 0), (172, 16), (192, 168), (198, 51)) as v (a, b)
), Addresses (a, b, c, d) as (
  select a, b, c.n * 20 + 1, (d.n * 10 + e.n) * 2 + 1
  from Networks cross join Digits as c cross join Digits as d cross join Digits as e
)
insert into FlowCorrelation (IPAddress, IPAddressSort, FullHostname)
select cast(a as nvarchar(3)) + N'.' + cast(b as nvarchar(3)) + N'.' + cast(c as nvarchar(3)) +
         N'.' + cast(d as nvarchar(3)),
       cast(a as bigint) * 1000000000 + b * 1000000 + c * 1000 + d,
       N'host-' + cast(a as nvarchar(3)) + N'-' + cast(c as nvarchar(3)) + N'-' +
         cast(d as nvarchar(3)) + N'.example.net'
from Addresses;

-- Each belongs to the smallest enabled group around it.
update FlowCorrelation
set IPAddressGroupID = isnull((
  select top 1 g.IPAddressGroupID
  from IPAddressGroups as g
  where g.Enabled = 1 and FlowCorrelation.IPAddressSort between g.IPRangeStart and g.IPRangeEnd
  order by g.IPRangeEnd - g.IPRangeStart, g.IPAddressGroupID desc), 0);

-- This computer's receiver. HOST_NAME() is the name of the client that runs this script, up to its
-- first dot as the program takes it.
insert into FlowEngines (ServerName, NetFlowPort)
select left(host_name(), charindex('.', host_name() + '.') - 1), 2055;

commit transaction;
set nocount off;
