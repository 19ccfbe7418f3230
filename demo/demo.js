// The Orvane demo: an HbbTV application that takes its keys through the
// keyset, binds to the broadcast, shows the channel with its now and next
// programmes, changes channel with the arrow and number keys, lists the
// channels, shows the receiver and the viewer's language, shows stream
// events, records the next programme (YELLOW), searches the guide (BLUE),
// plays a catch-up clip in place of the broadcast (GREEN; BACK returns) and
// logs every event it receives.
var demo = (function () {
  var video = null;
  var app = null;
  var channels = null;   // the receiver's channel list
  var focus = 0;         // highlighted entry of the list
  var current = -1;      // index of the presented channel in the list
  var streamUrl = 'dvb://current.ait/1.1';
  var streamListener = null;
  var start = new Date().getTime();
  var catchup = null;    // the catch-up player while it plays
  var catchupTimer = null;
  // Made by scripts/run-demo.sh beside the page; orvane-run plays it for real.
  var catchupUrl = 'media/last-night.mp4';
  var recording = null;  // the scheduled recording of a next programme
  var recordingStates = ['scheduled', 'recording', 'recorded', 'partly recorded', 'failed'];

  function $(id) { return document.getElementById(id); }

  function log(text) {
    var seconds = ((new Date().getTime() - start) / 1000).toFixed(2);
    console.log('demo: ' + text);
    var item = document.createElement('li');
    item.appendChild(document.createTextNode(seconds + ' ' + text));
    var list = $('event-log');
    list.appendChild(item);
    while (list.childNodes.length > 17) list.removeChild(list.firstChild);
  }

  function time(seconds) {
    var d = new Date(seconds * 1000);
    function two(n) { return (n < 10 ? '0' : '') + n; }
    return two(d.getUTCHours()) + ':' + two(d.getUTCMinutes());
  }

  function describe(programme) {
    if (!programme) return '-';
    return time(programme.startTime) + '  ' + programme.name;
  }

  function showProgrammes() {
    var now = null, next = null;
    try {
      var programmes = video.programmes;
      if (programmes && programmes.length > 0) now = programmes.item(0);
      if (programmes && programmes.length > 1) next = programmes.item(1);
    } catch (e) {
      log('no programme information: ' + e);
    }
    $('now').innerHTML = describe(now);
    $('next').innerHTML = describe(next);
  }

  function drawChannels() {
    var list = $('channel-list');
    list.innerHTML = '';
    if (!channels) return;
    for (var i = 0; i < channels.length; i++) {
      var channel = channels.item(i);
      var item = document.createElement('li');
      item.appendChild(document.createTextNode(channel.majorChannel + '  ' + channel.name));
      var classes = [];
      if (i === current) classes.push('current');
      if (i === focus) classes.push('focus');
      item.className = classes.join(' ');
      list.appendChild(item);
    }
  }

  function indexOf(channel) {
    for (var i = 0; channels && i < channels.length; i++)
      if (channels.item(i).ccid === channel.ccid) return i;
    return -1;
  }

  function onStreamEvent(event) {
    log('StreamEvent ' + event.name + ' ' + event.status + ' "' + event.data + '"');
    $('stream').innerHTML = 'Stream event <b>' + event.name + '</b>: ' + event.data + ' (' + event.text + ')';
  }

  // The receiver schedules a channel's stream events for the listeners of
  // that channel: listen again on each channel.
  function listenToStream() {
    if (streamListener) video.removeStreamEventListener(streamUrl, 'now', streamListener);
    streamListener = onStreamEvent;
    try {
      video.addStreamEventListener(streamUrl, 'now', streamListener);
    } catch (e) {
      log('addStreamEventListener failed: ' + e);
    }
  }

  function clock(ms) {
    var s = Math.floor(ms / 1000);
    return Math.floor(s / 60) + ':' + (s % 60 < 10 ? '0' : '') + (s % 60);
  }

  // GREEN: the broadcast stops and a catch-up clip plays in its place.
  function startCatchup() {
    if (catchup) return;
    video.stop();
    catchup = document.createElement('object');
    catchup.type = 'video/mp4';
    catchup.style.cssText = 'position:absolute;left:0;top:0;width:1280px;height:720px';
    document.body.insertBefore(catchup, $('ui'));
    catchup.data = catchupUrl;
    catchup.onPlayStateChange = function () {
      log('catch-up PlayStateChange ' + ['stopped', 'playing', 'paused', 'connecting', 'buffering',
                                         'finished', 'error'][catchup.playState]);
    };
    catchup.play(1);
    $('catchup-title').innerHTML = catchupUrl.substring(catchupUrl.lastIndexOf('/') + 1);
    $('catchup-panel').style.display = 'block';
    catchupTimer = setInterval(function () {
      $('catchup-position').innerHTML = clock(catchup.playPosition) + ' / ' + clock(catchup.playTime);
    }, 250);
    log('catch-up ' + catchupUrl);
  }

  // BACK: the clip goes and the broadcast comes back.
  function stopCatchup() {
    if (!catchup) return;
    clearInterval(catchupTimer);
    catchup.stop();
    catchup.parentNode.removeChild(catchup);
    catchup = null;
    $('catchup-panel').style.display = 'none';
    log('back to the broadcast');
    try {
      video.bindToCurrentChannel();
    } catch (e) {
      // reported as failed by design; the outcome comes as events
    }
  }

  function showRecording() {
    $('recording').innerHTML = recording ? '&#9679; ' + recordingStates[recording.state] : '';
  }

  // YELLOW: the next programme is recorded; its state shows beside it.
  function recordNext() {
    try {
      var next = video.programmes.item(1);
      recording = $('pvr').record(next);
      log('record ' + next.name + ': ' + (recording ? recordingStates[recording.state] : 'refused'));
    } catch (e) {
      log('cannot record: ' + e);
    }
    showRecording();
  }

  // BLUE: the guide is searched for a word; what was found shows in a panel.
  function searchGuide(word) {
    var manager = $('guide');
    var search = manager.createSearch(1);
    search.setQuery(search.createQuery('Programme.name', 6, word));
    manager.onMetadataSearch = function (found, state) {
      // Search results are only counted and paged: their items give no objects.
      var page = found.result;
      $('found-title').innerHTML = 'Search "' + word + '"';
      $('found-list').innerHTML = '<li>' + page.totalSize + ' programmes found</li>' +
          '<li>page at ' + page.offset + ': ' + page.length + ' of them</li>';
      $('found').style.display = 'block';
      log('MetadataSearch state ' + state + ', ' + page.totalSize + ' found');
    };
    search.result.getResults(0, 4);
    log('search the guide for "' + word + '"');
  }

  function tune(index) {
    if (!channels || index < 0 || index >= channels.length) return;
    log('setChannel ' + channels.item(index).name);
    video.setChannel(channels.item(index));
  }

  function onKey(e) {
    var code = e.keyCode;
    log('key ' + code);
    if (code === VK_LEFT) {
      video.prevChannel();
    } else if (code === VK_RIGHT) {
      video.nextChannel();
    } else if (code === VK_UP) {
      focus = Math.max(0, focus - 1);
      drawChannels();
    } else if (code === VK_DOWN) {
      focus = Math.min(channels.length - 1, focus + 1);
      drawChannels();
    } else if (code === VK_ENTER) {
      tune(focus);
    } else if (code >= VK_0 && code <= VK_9) {
      var number = code - VK_0;
      for (var i = 0; i < channels.length; i++)
        if (channels.item(i).majorChannel === number) tune(i);
    } else if (code === VK_BLUE) {
      searchGuide('News');
    } else if (code === VK_YELLOW) {
      recordNext();
    } else if (code === VK_GREEN) {
      startCatchup();
    } else if (code === VK_BACK) {
      stopCatchup();
    } else if (code === VK_RED) {
      var ui = $('ui');
      ui.style.visibility = ui.style.visibility === 'hidden' ? 'visible' : 'hidden';
    } else {
      return;
    }
    e.preventDefault();
  }

  // The receiver's identity and the viewer's language, in a corner.
  function showReceiver() {
    try {
      var config = $('config');
      var local = config.localSystem;
      var language = config.configuration.preferredAudioLanguage;
      $('receiver').innerHTML = local.vendorName + ' ' + local.modelName + ' (' + local.deviceID + ')' +
          ' &middot; language ' + language;
      log('receiver ' + local.modelName + ', language ' + language);
    } catch (e) {
      log('no configuration: ' + e);
    }
  }

  function init() {
    video = $('video');
    showReceiver();
    try {
      app = $('appmgr').getOwnerApplication(document);
      var keyset = app.privateData.keyset;
      var granted = keyset.setValue(keyset.RED | keyset.GREEN | keyset.YELLOW | keyset.BLUE | keyset.NAVIGATION |
                                    keyset.NUMERIC);
      log('keyset ' + granted + ' of ' + keyset.maximumValue);
      app.show();
    } catch (e) {
      log('no application manager: ' + e);
    }

    video.onPlayStateChange = function (state, error) {
      log('PlayStateChange ' + ['unrealized', 'connecting', 'presenting', 'stopped'][state] +
          (error === undefined ? '' : ' error ' + error));
    };
    video.onChannelChangeSucceeded = function (channel) {
      log('ChannelChangeSucceeded ' + channel.name);
      $('channel').innerHTML = channel.majorChannel + ' ' + channel.name;
      current = indexOf(channel);
      focus = current;
      drawChannels();
      showProgrammes();
      listenToStream();
    };
    video.onChannelChangeError = function (channel, error) {
      log('ChannelChangeError ' + error);
    };
    video.onProgrammesChanged = function () {
      log('ProgrammesChanged');
      showProgrammes();
    };
    video.addEventListener('FullScreenChange', function () { log('FullScreenChange'); }, false);
    video.onRecordingEvent = function (state, error, id) {
      log('RecordingEvent ' + id + ' ' + recordingStates[state] + (error ? ' error ' + error : ''));
      showRecording();
    };

    try {
      channels = video.getChannelConfig().channelList;
      log(channels.length + ' channels');
    } catch (e) {
      log('no channel list: ' + e);
    }
    drawChannels();
    document.addEventListener('keydown', onKey, false);
    try {
      video.bindToCurrentChannel();
    } catch (e) {
      // The plug-in reports the binding call to the engine as failed; the
      // outcome comes as events.
    }
    log('bound to the current channel');
  }

  return { init: init };
})();

window.onload = demo.init;
