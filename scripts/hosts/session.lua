-- One visit of a plugin to a session of Ardour, run by ardour7-lua from drive.
-- Arguments: visit ("make", "export", "reload" or "together"), format ("LXVST" or "VST3"), id of the
-- plugin, folder of the session, file of the parameters ("name<TAB>value" per line; names alone for
-- "make"), and for "together", where both formats share a session, the id of the LXVST one.
-- Each result is a line "row<TAB>check<TAB>ok or FAIL<TAB>text"; all other lines are the host's talk.

local visit, format, id, folder, parameterFile, otherId = table.unpack(arg)
local rate = 48000 -- Hz
local block = visit == "reload" and 1024 or 256 -- samples; a state has to come back in any block
local noteOn = { 0x90, 69, 100 }
-- Where the values of 0 to 1 below leave a note: 1 octave, 7 semitones and 50 cents up. Whole numbers
-- get a value between two of theirs.
local tuned = { Wet = 0.5, Octaves = 0.7, Semitones = 0.8, Cents = 0.75 }
-- What would hide the pitch of a sine keeps the value that it has in a new instance.
local untouched = { Pitch = true, Width = true, Frequency = true, Shape = true,
    ["Shape custom morph"] = true, ["Shape step sequencer"] = true }
local lua = ARDOUR.LuaAPI

io.stdout:setvbuf("no")

local function row(check, good, text, ...)
    print(string.format("row\t%s\t%s\t" .. text, check, good and "ok" or "FAIL", ...))
    return good
end

-- The session tool may hang or abort when it tidies up, without any plugin, so it does not get there.
local function leave()
    print("end")
    os.execute("kill -KILL $PPID")
end

local function need(check, good, text, ...)
    if not good then
        row(check, false, text, ...)
        leave()
    end
    return good
end

-- What a host may set, in the plugin's order; bypass is the host's own switch.
local function parameters(processor)
    local plugin, list = processor:to_insert():plugin(0), {}
    for index = 0, plugin:parameter_count() - 1 do
        local control = plugin:nth_parameter(index, false)
        local name = plugin:parameter_label(control)
        if plugin:parameter_is_control(control) and plugin:parameter_is_input(control) and
            name ~= "Bypass" then
            list[#list + 1] = { index = index, control = control, name = name }
        end
    end
    return list
end

local function read(processor, parameter)
    local value = lua.get_processor_param(processor, parameter.index)
    return value
end

local function lines(path)
    local list = {}
    for line in io.lines(path) do list[#list + 1] = line end
    return list
end

local function send(insert, bytes)
    local parser, sent = ARDOUR.RawMidiParser(), false
    for _, byte in ipairs(bytes) do
        if parser:process_byte(byte) then
            sent = insert:write_immediate_event(Evoral.EventType.MIDI_EVENT, parser:buffer_size(),
                parser:midi_buffer())
        end
    end
    return sent
end

-- Highest peak of the track in a tenth of a second, decibels of full scale.
local function peak(route)
    local meter, first = route:peak_meter(), route:n_outputs():n_midi()
    meter:reset_max()
    sleep(0.2)
    local loudest = -200
    for channel = first, first + route:n_outputs():n_audio() - 1 do
        loudest = math.max(loudest, meter:meter_level(channel, ARDOUR.MeterType.MeterPeak))
    end
    return loudest
end

local function checkListed()
    local found
    for info in lua.list_plugins():iter() do
        if info.type == ARDOUR.PluginType[format] and info.unique_id == id then found = info end
    end
    need("listed", found, "not among the plugins of the host")
    row("listed", found.name == "Tonvale" and found.creator == "Quillfern", "%s by %s", found.name,
        found.creator)
end

local function insertOnNewTrack(session, kind, pluginId)
    local processor = lua.new_plugin(session, pluginId, ARDOUR.PluginType[kind], "")
    need("instance", not processor:isnil(), "none")
    local count, midi, audio = ARDOUR.ChanCount, ARDOUR.DataType("midi"), ARDOUR.DataType("audio")
    local route = session:new_midi_track(count(midi, 1), count(audio, 2), false, ARDOUR.PluginInfo(),
        nil, nil, 1, "Track", ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, false):front()
    need("instance", route:add_processor_by_index(processor, 0, nil, true) == 0, "not taken")
    return route, processor
end

local function checkFace(route, processor)
    local insert = processor:to_insert()
    local ins, outs = insert:natural_input_streams(), insert:natural_output_streams()
    row("buses", ins:n_audio() == 2 and ins:n_midi() == 1 and outs:n_audio() == 2,
        "%d in, %d MIDI, %d out, latency %d", ins:n_audio(), ins:n_midi(), outs:n_audio(),
        route:signal_latency())
    local expected, wrong = lines(parameterFile), {}
    local list = parameters(processor)
    for place = 1, math.max(#expected, #list) do
        local name, whole = list[place] and list[place].name, expected[place]
        if format == "LXVST" and whole then whole = whole:sub(1, 31) end -- its room for a name
        if name ~= whole then
            wrong[#wrong + 1] = string.format("%s for %s", name, expected[place])
        end
    end
    row("parameter names", #list > 0 and #wrong == 0, "%d of %d %s", #list - #wrong, #expected,
        table.concat(wrong, ", "))
end

-- How far a parameter may answer from what was written: one value of an envelope never moves, and whole numbers answer with one of their
-- own; octaves, the coarsest, have seven.
local function slack(parameter)
    local isCoarse = parameter.name:find("^Envelope reserved")
    return isCoarse and 1 or 1 / 6
end

-- Every parameter comes back as it was written; then those that move the pitch get known values.
local function writeParameters(processor)
    local list, worst = parameters(processor), { off = 0, name = "none" }
    local function write(parameter, value)
        lua.set_processor_param(processor, parameter.index, value)
        sleep(0.02)
        return read(processor, parameter)
    end
    for _, parameter in ipairs(list) do
        local before = read(processor, parameter)
        for _, value in ipairs({ 0, 1, 0.25, 0.625 }) do
            local got = write(parameter, value)
            if write(parameter, got) ~= got or math.abs(got - value) > slack(parameter) then
                worst = { off = math.abs(got - value), name = parameter.name }
            end
        end
        write(parameter, tuned[parameter.name] or untouched[parameter.name] and before or 0.625)
    end
    row("parameters written", #list > 0 and worst.off == 0, "%d, worst off by %.3g (%s)", #list,
        worst.off, worst.name)
    local file = io.open(parameterFile, "w")
    for _, parameter in ipairs(list) do
        file:write(string.format("%s\t%.17g\n", parameter.name, read(processor, parameter)))
    end
    file:close()
end

-- Within what a host's single precision keeps; the state itself is compared byte by byte.
local function checkParameters(processor)
    local expected, list, same, odd = lines(parameterFile), parameters(processor), 0, ""
    for place, parameter in ipairs(list) do
        local name, value = (expected[place] or ""):match("^(.*)\t(.*)$")
        local now = read(processor, parameter)
        if name == parameter.name and math.abs(now - tonumber(value)) < 1e-6 then
            same = same + 1
        else
            odd = string.format(", %s is %.9g", parameter.name, now)
        end
    end
    row("values after reload", same == #expected and same == #list, "%d of %d the same%s", same,
        #expected, odd)
end

-- A line from bottom to top, drawn by the host, moves the wet level while the transport rolls.
local function checkAutomation(session, processor)
    local wet
    for _, parameter in ipairs(parameters(processor)) do
        if parameter.name == "Wet" then wet = parameter end
    end
    need("automation", wet, "there is no Wet")
    local points = lua.plugin_automation(processor, wet.index)
    points:add(Temporal.timepos_t(0), 0, false, true)
    points:add(Temporal.timepos_t(rate), 1, false, true)
    processor:to_automatable():automation_control(
        Evoral.Parameter(ARDOUR.AutomationType.PluginAutomation, 0, wet.control), false)
        :set_automation_state(ARDOUR.AutoState.Play)
    session:request_roll(ARDOUR.TransportRequestSource.TRS_UI)
    sleep(0.2)
    local last, rises, falls = read(processor, wet), 0, 0
    for _ = 1, 8 do
        sleep(0.1)
        local now = read(processor, wet)
        rises = rises + (now > last and 1 or 0)
        falls = falls + (now < last and 1 or 0)
        last = now
    end
    session:request_stop(false, false, ARDOUR.TransportRequestSource.TRS_UI)
    row("automation", rises >= 6 and falls == 0 and last > 0.5, "%d steps up, %d down, to %.3f", rises,
        falls, last)
end

-- Two instances of each format in one process keep their values apart.
local function checkTogether(session)
    local inserted, apart = {}, 0
    for place, kind in ipairs({ "LXVST", "VST3", "VST3", "LXVST" }) do
        local _, processor = insertOnNewTrack(session, kind, kind == format and id or otherId)
        inserted[place] = processor
        lua.set_processor_param(processor, parameters(processor)[1].index, place / 8)
    end
    sleep(0.2)
    for place, processor in ipairs(inserted) do
        if read(processor, parameters(processor)[1]) == place / 8 then apart = apart + 1 end
    end
    row("four in one session", apart == 4, "%d with a value of its own", apart)
end

AudioEngine:set_backend("None (Dummy)", "Unit-Test", "")
AudioEngine:set_buffer_size(block)
local exists = visit == "reload" or visit == "export"
local session = exists and load_session(folder, "tonvale") or
    not exists and create_session(folder, "tonvale", rate)
need("session", session, "none")

if visit == "make" then
    checkListed()
    local route, processor = insertOnNewTrack(session, format, id)
    checkFace(route, processor)
    writeParameters(processor)
    local sent = send(processor:to_insert(), noteOn)
    local level = peak(route)
    row("plays a note", sent and level > -60, "%.1f dB", level)
    row("save", session:save_state("", false, false, false, false, false) == 0, "session saved")
elseif visit == "together" then
    checkTogether(session)
else
    local processor = session:route_by_name("Track"):nth_plugin(0)
    need("reload", not processor:isnil() and processor:to_insert():plugin(0):unique_id() == id,
        "the plugin is not on its track")
    if visit == "reload" then
        checkParameters(processor)
        session:save_state("again", false, false, false, false, false)
        checkAutomation(session, processor)
    else
        local export = session:simple_export()
        export:set_preset("75969a1c-3133-4694-864b-a1fa50e43348") -- WAV, 16 bits, of the host's own
        export:set_name("sound")
        export:set_folder(folder .. "/sound")
        export:set_range(0, 2 * rate)
        export:run_export()
        leave()
    end
end

session:close()
row("close", true, "session and plugin")
leave()
