// Draws the report from the data scripts beside it: the overview, and a page
// per kind chosen by the address's fragment. The overview's data is written
// last, so a report without it was interrupted.
'use strict';

(function (YH) {
  const {el, text} = YH;

  // Columns of each table: [key, heading, how the cell is drawn].
  const KINDS = {
    'calls': {label: 'Calls', view: 'table', columns: [['name', 'Name'], ['address', 'Number or address'],
      ['date', 'Date'], ['type', 'Type', 'call-type'], ['duration', 'Duration'], ['service', 'Service', 'service'],
      ['location', 'Location']]},
    'contacts': {label: 'Contacts', view: 'table', columns: [['name', 'Name'], ['picture', 'Picture', 'picture'],
      ['organization', 'Organization'], ['jobTitle', 'Job title'], ['nickName', 'Nickname'],
      ['properties', 'Numbers and addresses', 'properties'], ['birthday', 'Birthday'], ['note', 'Note'],
      ['creationDate', 'Created'], ['modification_date', 'Modified']]},
    'messages': {label: 'Conversations', card: 'Messages', view: 'threads'},
    'attachments': {label: 'Attachments', view: 'grid'},
    'notes': {label: 'Notes', view: 'table', columns: [['title', 'Title'], ['modify_date', 'Modified'],
      ['create_date', 'Created'], ['folder', 'Folder'], ['body', 'Text', 'long']]},
    'safari': {label: 'Safari', view: 'table', columns: [['title', 'Title'], ['url', 'Address', 'link'],
      ['type', 'Type'], ['lastVisitedDate', 'Last visit'], ['visitCount', 'Visits']]},
    'events': {label: 'Events', view: 'table', columns: [['title', 'Title'], ['start_date', 'Start'],
      ['end_date', 'End'], ['location', 'Location'], ['description', 'Description'], ['url', 'Address'],
      ['all_day', 'All day'], ['status', 'Status']]},
    'reminders': {label: 'Reminders', view: 'table', columns: [['title', 'Title'], ['list', 'List'],
      ['start_date', 'Due'], ['completed', 'Completed', 'yes-no'], ['completion_date', 'Completed on'],
      ['description', 'Notes', 'long']]},
    'recordings': {label: 'Voice memos', view: 'table', columns: [['title', 'Title'], ['date', 'Date'],
      ['duration', 'Duration'], ['name', 'File', 'file'], ['audio', 'Play', 'audio']]},
    'camera-photos': {label: 'Camera photos', view: 'grid'},
    'other-photos': {label: 'Other photos', view: 'grid'},
    'voicemail': {label: 'Voicemail', view: 'table', columns: [['name', 'Name'], ['address', 'Number'],
      ['date', 'Date'], ['duration', 'Duration'], ['heard', 'Heard', 'yes-no'], ['deleted', 'Deleted', 'yes-no'],
      ['file_name', 'File', 'file'], ['audio', 'Play', 'audio']]},
    'whatsapp': {label: 'WhatsApp', view: 'threads'},
    'whatsapp-calls': {label: 'WhatsApp calls', view: 'table', columns: [['name', 'Name'], ['address', 'Number'],
      ['date', 'Date'], ['type', 'Type', 'call-type'], ['duration', 'Duration'], ['service', 'Service'],
      ['answered', 'Answered', 'yes-no']]},
  };

  function start(overview) {
    const nav = document.getElementById('nav');
    nav.replaceChildren(...overview.kinds.filter(function (kind) { return KINDS[kind.name]; }).map(function (kind) {
      return el('a', {href: '#kind/' + kind.name}, KINDS[kind.name].label);
    }));
    const name = overview.device.deviceName || overview.device.folder;
    document.title = 'Backup report: ' + text(name);
    window.addEventListener('hashchange', function () { route(overview); });
    route(overview);
  }

  function incomplete() {
    YH.show(el('h1', {id: 'incomplete'}, 'This report is incomplete: run again'),
        el('p', {className: 'note'}, 'Writing it was interrupted. Run the same yh report command again with ' +
            '--resume to finish it without copying anything twice.'));
  }

  function route(overview) {
    const parts = decodeURIComponent(location.hash.slice(1)).split('/');
    if (parts[0] === 'kind' && KINDS[parts[1]]) return showKind(parts[1]);
    // Messages' conversations are #thread/N[/M], other kinds' #thread/KIND/N[/M].
    const kind = KINDS[parts[1]] ? parts.splice(1, 1)[0] : 'messages';
    if (parts[0] === 'thread' && KINDS[kind].view === 'threads' && /^\d+$/.test(parts[1])) {
      return YH.showThread(kind, KINDS[kind].label, Number(parts[1]),
          /^\d+$/.test(parts[2]) ? Number(parts[2]) : undefined);
    }
    showOverview(overview);
  }

  function showKind(kind) {
    YH.show(YH.note('Loading…'));
    const about = KINDS[kind];
    YH.load(kind).then(function (data) {
      if (about.view === 'threads') return YH.showThreads(kind, about.label, data.threads);
      if (about.view === 'grid') return YH.showGrid(kind, about.label, data);
      YH.showTable(kind, about.label, about.columns, data);
    }).catch(YH.failed);
  }

  function cardDetail(kind) {
    const parts = [];
    if (kind.messages !== null && kind.messages !== undefined) parts.push(kind.records + ' conversations');
    if (kind.missing) parts.push(kind.missing + ' without a file in the backup');
    else if (kind.skipped) parts.push(kind.skipped + ' files not copied');
    return parts.join(' · ');
  }

  // The device and each kind with its count.
  function showOverview(overview) {
    const device = overview.device;
    const facts = [['Device', device.deviceName], ['Model', [device.productName, device.productType]
      .filter(Boolean).join(', ')], ['iOS version', device.productVersion], ['Serial number', device.serialNumber],
    ['Backup date', device.lastBackupDate], ['Encrypted', device.encrypted ? 'yes' : 'no'],
    ['Backup folder', device.folder], ['Index', device.index]];
    const list = el('dl', {className: 'facts'});
    for (const [label, value] of facts) list.append(el('dt', null, label), el('dd', null, text(value)));
    const cards = el('div', {className: 'cards', id: 'kinds'});
    for (const kind of overview.kinds) {
      if (!KINDS[kind.name]) continue;
      const count = kind.messages === null || kind.messages === undefined ? kind.records : kind.messages;
      const card = el('a', {className: 'card', href: '#kind/' + kind.name},
          el('span', {className: 'count', title: kind.name}, String(count)),
          el('span', {className: 'label'}, KINDS[kind.name].card || KINDS[kind.name].label),
          el('span', {className: 'detail'}, cardDetail(kind)),
          typeof kind.deleted === 'number' ? el('span', {className: 'recovered-count' + (kind.deleted ? '' : ' none')},
              kind.deleted + ' recovered') : null);
      card.dataset.kind = kind.name;
      cards.append(card);
    }
    YH.show(el('h1', null, text(device.deviceName || device.folder)), list, cards);
  }

  YH.load('overview').then(start, incomplete);
})(window.YH);
